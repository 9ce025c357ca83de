// The files of one run go in place together or not at all: a failed write anywhere in the set,
// or a file that cannot be put in place, leaves every target as it was and no file behind.
#include "audio/output_set.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

TEST(OutputSet, EveryFileIsPutInPlace) {
    const TempDir dir;
    ASSERT_TRUE(write_text_file(dir.file("a.txt"), "earlier a"));
    OutputSet set;
    FileReplacement* a = output_set_open(set, dir.file("a.txt"));
    FileReplacement* b = output_set_open(set, dir.file("b.txt"));
    ASSERT_NE(a, nullptr);
    ASSERT_NE(b, nullptr);
    ASSERT_TRUE(replacement_write_text(*a, "new a"));
    ASSERT_TRUE(replacement_write_text(*b, "new b"));
    std::string failed;
    ASSERT_TRUE(output_set_commit(set, failed));
    EXPECT_EQ(read_text_file(dir.file("a.txt")), "new a");
    EXPECT_EQ(read_text_file(dir.file("b.txt")), "new b");
    EXPECT_EQ(folder_entry_count(dir.path()), 2u);
}

TEST(OutputSet, AFolderThatCannotTakeAFileIsFoundBeforeAnythingIsWritten) {
    const TempDir dir;
    OutputSet set;
    ASSERT_NE(output_set_open(set, dir.file("a.txt")), nullptr);
    EXPECT_EQ(output_set_open(set, dir.file("missing/b.txt")), nullptr);
}

TEST(OutputSet, AFailedWriteLeavesEveryTargetAsItWas) {
    const TempDir dir;
    ASSERT_TRUE(write_text_file(dir.file("a.txt"), "earlier a"));
    OutputSet set;
    FileReplacement* a = output_set_open(set, dir.file("a.txt"));
    FileReplacement* b = output_set_open(set, dir.file("b.txt"));
    ASSERT_TRUE(a != nullptr && b != nullptr);
    ASSERT_TRUE(replacement_write_text(*a, "new a"));
    b->failed = true; // as after a write the disk refused
    std::string failed;
    EXPECT_FALSE(output_set_commit(set, failed));
    EXPECT_EQ(failed, dir.file("b.txt"));
    EXPECT_EQ(read_text_file(dir.file("a.txt")), "earlier a");
    EXPECT_EQ(folder_entry_count(dir.path()), 1u);
}

TEST(OutputSet, AFileThatCannotBePutInPlaceTakesBackTheOnesBeforeIt) {
    const TempDir dir;
    ASSERT_TRUE(write_text_file(dir.file("a.txt"), "earlier a"));
    OutputSet set;
    FileReplacement* a = output_set_open(set, dir.file("a.txt"));
    FileReplacement* fresh = output_set_open(set, dir.file("fresh.txt"));
    FileReplacement* b = output_set_open(set, dir.file("b.txt"));
    ASSERT_TRUE(a != nullptr && fresh != nullptr && b != nullptr);
    ASSERT_TRUE(replacement_write_text(*a, "new a"));
    ASSERT_TRUE(replacement_write_text(*fresh, "new fresh"));
    ASSERT_TRUE(replacement_write_text(*b, "new b"));
    // A folder that is not empty now stands where b.txt goes: no rename can replace it.
    ASSERT_EQ(::mkdir(dir.file("b.txt").c_str(), 0755), 0);
    ASSERT_TRUE(write_text_file(dir.file("b.txt/inside"), "x"));
    std::string failed;
    EXPECT_FALSE(output_set_commit(set, failed));
    EXPECT_EQ(failed, dir.file("b.txt"));
    EXPECT_EQ(read_text_file(dir.file("a.txt")), "earlier a");
    EXPECT_FALSE(path_exists(dir.file("fresh.txt")));
    EXPECT_EQ(folder_entry_count(dir.path()), 2u); // a.txt and the folder
}

} // namespace
