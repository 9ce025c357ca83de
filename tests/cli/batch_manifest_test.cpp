// The batch manifest: separators, comments, the header, paths beside the manifest, and every kind
// of bad line refused with its line number before any pair runs.
#include "cli/batch_manifest.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

namespace {

struct Parsed {
    bool ok = false;
    Manifest manifest;
    std::string message;
};

Parsed parse(const std::string& text, const std::string& folder = "") {
    Parsed out;
    out.manifest.name = "pairs.tsv";
    out.ok = parse_manifest(text, folder, out.manifest, out.message);
    return out;
}

std::string refusal(const std::string& text) {
    const Parsed parsed = parse(text);
    EXPECT_FALSE(parsed.ok) << text;
    return parsed.message;
}

TEST(BatchManifest, ReadsTabAndCommaLinesSkippingHeaderCommentsAndBlanks) {
    const Parsed parsed = parse("ID\tref\tdut\n"
                                "# a comment\n"
                                "\n"
                                "a\tr1.wav\td1.wav\r\n"
                                "  b , sub/r2.wav , /abs/d2.wav\n");
    ASSERT_TRUE(parsed.ok) << parsed.message;
    ASSERT_EQ(parsed.manifest.pairs.size(), 2u);
    const ManifestPair& a = parsed.manifest.pairs[0];
    EXPECT_EQ(a.id, "a");
    EXPECT_EQ(a.ref, "r1.wav");
    EXPECT_EQ(a.dut, "d1.wav");
    EXPECT_EQ(a.line, 4u);
    const ManifestPair& b = parsed.manifest.pairs[1];
    EXPECT_EQ(b.id, "b");
    EXPECT_EQ(b.ref, "sub/r2.wav");
    EXPECT_EQ(b.dut, "/abs/d2.wav");
    EXPECT_EQ(b.line, 5u);
}

TEST(BatchManifest, RelativePathsAreTakenFromTheManifestsFolder) {
    const Parsed parsed = parse("a,r.wav,/abs/d.wav", "lists/");
    ASSERT_TRUE(parsed.ok);
    EXPECT_EQ(parsed.manifest.pairs[0].ref, "lists/r.wav");
    EXPECT_EQ(parsed.manifest.pairs[0].dut, "/abs/d.wav");
}

TEST(BatchManifest, TabsWinOverCommasInsideAPath) {
    const Parsed parsed = parse("a\tref,1.wav\tdut.wav\n");
    ASSERT_TRUE(parsed.ok);
    EXPECT_EQ(parsed.manifest.pairs[0].ref, "ref,1.wav");
}

TEST(BatchManifest, OnlyTheFirstContentLineCanBeAHeader) {
    const Parsed parsed = parse("# header next\nid,ref,dut\na,r.wav,d.wav\nid,r2.wav,d2.wav\n");
    ASSERT_TRUE(parsed.ok) << parsed.message;
    ASSERT_EQ(parsed.manifest.pairs.size(), 2u);
    EXPECT_EQ(parsed.manifest.pairs[1].id, "id");
    EXPECT_EQ(parsed.manifest.pairs[1].ref, "r2.wav");
}

TEST(BatchManifest, BadLinesAreRefusedWithTheirLineNumber) {
    EXPECT_EQ(refusal("# pairs\na\n"),
              "error: pairs.tsv:2: missing the ref column (expected id, ref, dut)\n");
    EXPECT_EQ(refusal("a,r.wav\n"),
              "error: pairs.tsv:1: missing the dut column (expected id, ref, dut)\n");
    EXPECT_EQ(refusal("a\tr.wav\t\n"),
              "error: pairs.tsv:1: missing the dut column (expected id, ref, dut)\n");
    EXPECT_EQ(refusal("a,r.wav,d.wav,x\n"),
              "error: pairs.tsv:1: too many columns (4; expected id, ref, dut)\n");
    EXPECT_EQ(refusal("a,r.wav,d.wav\n\nb,r.wav,d.wav\na,r2.wav,d2.wav\n"),
              "error: pairs.tsv:4: duplicate id 'a' (first on line 1)\n");
    const std::string unsafe = "' is not a safe file name (1 to 200 letters, digits, '-', '_' or "
                               "'.', not starting with '.')\n";
    EXPECT_EQ(refusal("../x,r.wav,d.wav\n"), "error: pairs.tsv:1: id '../x" + unsafe);
    EXPECT_EQ(refusal("ok,r.wav,d.wav\na b,r.wav,d.wav\n"), "error: pairs.tsv:2: id 'a b" + unsafe);
    EXPECT_EQ(refusal(",r.wav,d.wav\n"), "error: pairs.tsv:1: id '" + unsafe);
    EXPECT_EQ(refusal(".hidden,r.wav,d.wav\n"), "error: pairs.tsv:1: id '.hidden" + unsafe);
    EXPECT_EQ(refusal(std::string(201, 'x') + ",r.wav,d.wav\n"),
              "error: pairs.tsv:1: id '" + std::string(201, 'x') + unsafe);
}

TEST(BatchManifest, SafeIds) {
    EXPECT_TRUE(is_safe_pair_id("take-01_v2.final"));
    EXPECT_TRUE(is_safe_pair_id(std::string(200, 'a')));
    EXPECT_FALSE(is_safe_pair_id("a/b"));
    EXPECT_FALSE(is_safe_pair_id("a\\b"));
    EXPECT_FALSE(is_safe_pair_id(".."));
}

TEST(BatchManifest, ReadsTheFileAndNamesItAsGiven) {
    const TempDir dir;
    ASSERT_TRUE(write_text_file(dir.file("pairs.csv"), "id,ref,dut\np,r.wav,d.wav\nq\n"));
    Manifest manifest;
    std::string message;
    EXPECT_FALSE(read_manifest(dir.file("pairs.csv"), manifest, message));
    EXPECT_EQ(message, "error: " + dir.file("pairs.csv") +
                           ":3: missing the ref column (expected id, ref, dut)\n");
    ASSERT_TRUE(write_text_file(dir.file("pairs.csv"), "p,r.wav,d.wav\n"));
    ASSERT_TRUE(read_manifest(dir.file("pairs.csv"), manifest, message)) << message;
    EXPECT_EQ(manifest.pairs[0].ref, dir.file("r.wav"));
    EXPECT_FALSE(read_manifest(dir.file("absent.tsv"), manifest, message));
    EXPECT_EQ(message, "error: could not read manifest '" + dir.file("absent.tsv") + "'\n");
    EXPECT_FALSE(read_manifest(dir.path(), manifest, message));
}

} // namespace
