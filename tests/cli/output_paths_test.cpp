#include "cli/output_paths.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

bool is_directory(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

TEST(PathStem, CutsDirectoryAndLastExtension) {
    EXPECT_EQ(path_stem("a/b/c.wav"), "c");
    EXPECT_EQ(path_stem("c.tar.gz"), "c.tar");
    EXPECT_EQ(path_stem("C:\\audio\\take 1.wav"), "take 1");
    EXPECT_EQ(path_stem("dir.v2/x"), "x");
    EXPECT_EQ(path_stem("noext"), "noext");
    EXPECT_EQ(path_stem("dir/"), "");
}

TEST(PathStem, LeadingDotDoesNotCount) {
    EXPECT_EQ(path_stem(".hidden"), ".hidden");
    EXPECT_EQ(path_stem("x/.hidden"), ".hidden");
    EXPECT_EQ(path_stem("x/.hidden.wav"), ".hidden");
}

TEST(PathStem, CutTo255Characters) {
    const std::string long_name(300, 'n');
    EXPECT_EQ(path_stem("d/" + long_name + ".wav"), std::string(255, 'n'));
}

TEST(OutputPaths, TrailingSlashNamesADirectoryMadeOnlyWhenAsked) {
    const TempDir tmp;
    const std::string out = tmp.file("reports/");
    OutputPaths paths;
    std::string message;
    ASSERT_TRUE(plan_output_paths(out.c_str(), "in/take.one.wav", true, paths));
    EXPECT_FALSE(path_exists(tmp.file("reports")));
    EXPECT_EQ(paths.directory, tmp.file("reports"));
    EXPECT_EQ(paths.html_path, tmp.file("reports/take.one.html"));
    EXPECT_EQ(paths.json_path, tmp.file("reports/take.one.json"));
    ASSERT_TRUE(create_output_directory(paths, message));
    EXPECT_TRUE(is_directory(tmp.file("reports")));
    EXPECT_EQ(message, "");
}

TEST(OutputPaths, BackslashAlsoNamesADirectory) {
    const TempDir tmp;
    const std::string out = tmp.file("win\\");
    OutputPaths paths;
    std::string message;
    ASSERT_TRUE(plan_output_paths(out.c_str(), "ref.wav", false, paths));
    ASSERT_TRUE(create_output_directory(paths, message));
    EXPECT_TRUE(is_directory(tmp.file("win")));
    EXPECT_EQ(paths.html_path, tmp.file("win/ref.html"));
    EXPECT_EQ(paths.json_path, "");
}

TEST(OutputPaths, ExistingDirectoryWithoutSeparator) {
    const TempDir tmp;
    OutputPaths paths;
    ASSERT_TRUE(plan_output_paths(tmp.path().c_str(), "/x/y/.hidden", true, paths));
    EXPECT_EQ(paths.html_path, tmp.file(".hidden.html"));
    EXPECT_EQ(paths.json_path, tmp.file(".hidden.json"));
}

TEST(OutputPaths, ExactFileGetsJsonBesideIt) {
    OutputPaths paths;
    ASSERT_TRUE(plan_output_paths("x.html", "ref.wav", true, paths));
    EXPECT_EQ(paths.html_path, "x.html");
    EXPECT_EQ(paths.json_path, "x.json");
    ASSERT_TRUE(plan_output_paths("dir.v2/x", "ref.wav", true, paths));
    EXPECT_EQ(paths.html_path, "dir.v2/x");
    EXPECT_EQ(paths.json_path, "dir.v2/x.json");
    ASSERT_TRUE(plan_output_paths("a\\b.c\\r.htm", "ref.wav", true, paths));
    EXPECT_EQ(paths.json_path, "a\\b.c\\r.json");
}

TEST(OutputPaths, NoJsonPathUnlessWanted) {
    OutputPaths paths;
    std::string message;
    ASSERT_TRUE(plan_output_paths("x.html", "ref.wav", false, paths));
    EXPECT_EQ(paths.json_path, "");
    EXPECT_FALSE(paths.directory.has_value());
    EXPECT_TRUE(create_output_directory(paths, message));
}

TEST(OutputPaths, InputWithoutStemGivesBareExtension) {
    const TempDir tmp;
    OutputPaths paths;
    ASSERT_TRUE(plan_output_paths(tmp.path().c_str(), "dir/", false, paths));
    EXPECT_EQ(paths.html_path, tmp.path() + "/.html");
}

TEST(OutputPaths, DirectoryIsCreatedOneLevelOnly) {
    const TempDir tmp;
    const std::string out = tmp.file("missing/deeper/");
    OutputPaths paths;
    std::string message;
    ASSERT_TRUE(plan_output_paths(out.c_str(), "ref.wav", false, paths));
    EXPECT_FALSE(create_output_directory(paths, message));
    EXPECT_EQ(message,
              "error: could not create output directory '" + tmp.file("missing/deeper") + "'\n");
    EXPECT_FALSE(path_exists(tmp.file("missing")));
}

TEST(OutputPaths, OverlongPathsFail) {
    OutputPaths paths;
    const std::string long_file(4096, 'f');
    EXPECT_FALSE(plan_output_paths(long_file.c_str(), "ref.wav", false, paths));
    const std::string long_dir(4096, 'd');
    EXPECT_FALSE(plan_output_paths((long_dir + "/").c_str(), "ref.wav", false, paths));
}

TEST(OutputPaths, JsonPathLengthIsCheckedOnlyWhenWanted) {
    // A 4094-character path: the HTML path fits; the JSON path (directory part, stem "x" and
    // ".json") needs 4097 and does not. The stem is cut to 255, so only the directory can be long.
    const std::string out = std::string(4090, 'd') + "/x.h";
    OutputPaths paths;
    EXPECT_TRUE(plan_output_paths(out.c_str(), "ref.wav", false, paths));
    EXPECT_FALSE(plan_output_paths(out.c_str(), "ref.wav", true, paths));
}

} // namespace
