#include "cli_test_support.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

// Fragments of the usage text that must appear word for word.
const char* const kRequiredFragments[] = {
    "sonalyx -- WAV Audio QA analysis engine\n",
    "sonalyx analyze --ref <ref.wav> --dut <dut.wav> --out <path> [options]\n",
    "sonalyx trim --input <in.wav> --out <out.wav> [--report <report.json>]\n",
    "sonalyx plot --input <in.wav> --out <path> [--json]\n",
    "--defaults-cfg <file.cfg>  default: sonalyx-defaults.cfg next to the binary, if present\n",
    "also write raw results as JSON\n",
    "override check tolerances (JSON, // comments ok)\n",
    "spectral multi-snapshot count\n",
    "add Time Domain (whole-file % diff scan, off by default)\n",
    "add Impulse Template check (off by default)\n",
    "spectral profile (mutually exclusive)\n",
    "add a tolerant Bit-Accuracy verdict (108dB ceiling)\n",
    "Bit-Exactness failure fails the overall verdict\n",
    "skip Bit-Exactness (mutually exclusive with --bitexact)\n",
    "skip Distortion (THD+N)\n",
    "Level Fidelity failure doesn't fail the overall verdict (scan still runs, card still shown; "
    "gates by default)\n",
    "skip Loudness (BS.1770)\n",
    "Loudness failure fails the overall verdict (reference-only by default)\n",
    "Artifact Detection failure doesn't fail the overall verdict (scan still runs, card still "
    "shown; gates by default)\n",
    "exit with status 2 when the overall verdict is FAIL (default: exit 0 whenever the report was "
    "written; errors always exit 1)\n",
    "suppress the Aligning.../Analyzing.../Writing report... status lines (printed to stderr by "
    "default)\n",
    "These flags always override --config/--defaults-cfg.\n",
    "--report <report.json>   write offsets/PSR/similarity as JSON (default: prints to stdout)\n",
    "Renders one file's spectral snapshot + waveform overview as a standalone HTML page -- no "
    "--dut, no verdicts. Use analyze when comparing against a reference.\n",
    "--out (analyze/plot): a directory or trailing '/' writes <basename>.html there; otherwise "
    "--out is the exact path. --json's path is the same with .json swapped in.\n",
    "sonalyx analyze --ref original.wav --dut latest.wav --out report.html\n",
    "sonalyx plot --input original.wav --out snapshot.html\n",
    "sonalyx trim --input original.wav --out trimmed.wav\n",
};

TEST(UsageText, HoldsEveryFixedLine) {
    const std::string& usage = usage_text();
    for (const char* fragment : kRequiredFragments)
        EXPECT_NE(usage.find(fragment), std::string::npos) << "missing: " << fragment;
}

TEST(UsageText, TrimParagraphSaysWhatTrimWrites) {
    const std::string& usage = usage_text();
    EXPECT_NE(usage.find("trim:\n"
                         "  Detects the leading and the trailing sync tone and writes exactly the "
                         "frames between the\n"
                         "  end of the leading tone and the start of the trailing one, in the "
                         "input's own format;\n"
                         "  nothing is added (the silence around the programme comes from the test "
                         "signal). Fails (no\n"),
              std::string::npos);
    EXPECT_EQ(usage.find("padded"), std::string::npos);
    EXPECT_EQ(usage.find("silence on each side"), std::string::npos);
}

TEST(UsageText, StartsWithTheTitleAndHasOneLiteralPercentSign) {
    const std::string& usage = usage_text();
    EXPECT_EQ(usage.rfind("sonalyx -- WAV Audio QA analysis engine\n", 0), 0u);
    EXPECT_EQ(usage.find("%%"), std::string::npos);
    EXPECT_EQ(std::count(usage.begin(), usage.end(), '%'), 1);
}

TEST(UsageText, NamesEveryAnalyzeOptionOnItsOwnLineInTableOrder) {
    const std::string& usage = usage_text();
    const char* options[] = {"--ref",
                             "--dut",
                             "--out",
                             "--json",
                             "--junit <file.xml>",
                             "--config",
                             "--defaults-cfg <file.cfg>   ",
                             "--snapshots",
                             "--deepscan",
                             "--impulse",
                             "--ampsweep",
                             "--bitaccuracy",
                             "--bitexact ",
                             "--no-bitexact",
                             "--no-distortion",
                             "--levelfidelity-ref-only",
                             "--no-loudness",
                             "--loudness ",
                             "--artifact-ref-only",
                             "--exit-code",
                             "--quiet",
                             "--help, -h"};
    std::size_t from = usage.find("analyze:\n");
    ASSERT_NE(from, std::string::npos);
    for (const char* option : options) {
        const std::size_t at = usage.find(std::string("\n  ") + option, from);
        ASSERT_NE(at, std::string::npos) << option;
        from = at + 1;
    }
    EXPECT_LT(from, usage.find("These flags always override"));
}

} // namespace
