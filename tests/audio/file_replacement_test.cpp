// The all-or-nothing file writer: a new file stays invisible until it is committed, then takes
// the target's name in one rename; an abandoned or failed one leaves the earlier file and the
// folder exactly as they were.
#include "audio/file_replacement.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::span<const std::uint8_t> bytes_of(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

TEST(FileReplacement, CommitCreatesTheFile) {
    const TempDir dir;
    EXPECT_TRUE(write_file_atomically(dir.file("new.txt"), "contents"));
    EXPECT_EQ(read_text_file(dir.file("new.txt")), "contents");
    EXPECT_EQ(folder_entry_count(dir.path()), 1u);
}

// Both ways of holding the new file: nameless (where the folder allows it) and named.
class FileReplacementKinds : public ::testing::TestWithParam<bool> {};

TEST_P(FileReplacementKinds, TheCommitReplacesTheEarlierFileInOneStep) {
    const TempDir dir;
    const std::string target = dir.file("out.txt");
    ASSERT_TRUE(write_text_file(target, "earlier"));
    FileReplacement file;
    ASSERT_TRUE(replacement_open(target, file, GetParam()));
    ASSERT_TRUE(replacement_write(file, bytes_of("later, ")));
    ASSERT_TRUE(replacement_write(file, bytes_of("in two pieces")));
    EXPECT_EQ(read_text_file(target), "earlier");
    // A nameless file is not in the folder at all until it is committed.
    EXPECT_EQ(folder_entry_count(dir.path()), file.unnamed ? 1u : 2u);
    ASSERT_TRUE(replacement_commit(file));
    EXPECT_EQ(read_text_file(target), "later, in two pieces");
    EXPECT_EQ(folder_entry_count(dir.path()), 1u);
}

TEST_P(FileReplacementKinds, AnAbandonedFileLeavesNothing) {
    const TempDir dir;
    const std::string target = dir.file("out.txt");
    ASSERT_TRUE(write_text_file(target, "earlier"));
    FileReplacement file;
    ASSERT_TRUE(replacement_open(target, file, GetParam()));
    EXPECT_EQ(file.unnamed, GetParam()); // this folder's file system holds nameless files
    ASSERT_TRUE(replacement_write(file, bytes_of("half")));
    replacement_abandon(file);
    EXPECT_EQ(read_text_file(target), "earlier");
    EXPECT_EQ(folder_entry_count(dir.path()), 1u);
}

INSTANTIATE_TEST_SUITE_P(NamelessAndNamed, FileReplacementKinds, ::testing::Bool());

TEST(FileReplacement, AbandonedOrDroppedLeavesTheFolderAsItWas) {
    const TempDir dir;
    const std::string target = dir.file("out.txt");
    ASSERT_TRUE(write_text_file(target, "earlier"));
    {
        FileReplacement file;
        ASSERT_TRUE(replacement_open(target, file));
        ASSERT_TRUE(replacement_write(file, bytes_of("half")));
        replacement_abandon(file);
        replacement_abandon(file);
        EXPECT_FALSE(replacement_commit(file));
    }
    {
        FileReplacement file;
        ASSERT_TRUE(replacement_open(target, file));
        ASSERT_TRUE(replacement_write(file, bytes_of("half")));
    }
    EXPECT_EQ(read_text_file(target), "earlier");
    EXPECT_EQ(folder_entry_count(dir.path()), 1u);
}

TEST(FileReplacement, AFailedWriteRefusesTheCommit) {
    const TempDir dir;
    const std::string target = dir.file("out.txt");
    ASSERT_TRUE(write_text_file(target, "earlier"));
    FileReplacement file;
    ASSERT_TRUE(replacement_open(target, file));
    ASSERT_TRUE(replacement_write(file, bytes_of("first part")));
    // The descriptor now refuses writes, as a full disk would.
    const int read_only = ::open(target.c_str(), O_RDONLY);
    ASSERT_GE(::dup2(read_only, file.fd), 0);
    ::close(read_only);
    EXPECT_FALSE(replacement_write(file, bytes_of("second part")));
    EXPECT_FALSE(replacement_write(file, bytes_of("third part")));
    EXPECT_FALSE(replacement_commit(file));
    EXPECT_EQ(read_text_file(target), "earlier");
    EXPECT_EQ(folder_entry_count(dir.path()), 1u);
}

TEST(FileReplacement, MissingFolderFailsWithoutCreatingAnything) {
    const TempDir dir;
    EXPECT_FALSE(write_file_atomically(dir.file("absent/out.txt"), "x"));
    EXPECT_EQ(folder_entry_count(dir.path()), 0u);
}

TEST(FileReplacement, PermissionsAreThoseOfAnyNewFile) {
    const TempDir dir;
    const mode_t mask = ::umask(027);
    const bool written = write_file_atomically(dir.file("out.txt"), "x");
    ::umask(mask);
    ASSERT_TRUE(written);
    struct stat info {};
    ASSERT_EQ(::stat(dir.file("out.txt").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0640u);
}

TEST(FileReplacement, ASymbolicLinkIsFollowedAndKept) {
    const TempDir dir;
    ASSERT_EQ(::mkdir(dir.file("real").c_str(), 0755), 0);
    ASSERT_TRUE(write_text_file(dir.file("real/target.txt"), "earlier"));
    ASSERT_EQ(::symlink("real/target.txt", dir.file("link.txt").c_str()), 0);
    ASSERT_TRUE(write_file_atomically(dir.file("link.txt"), "new"));
    EXPECT_EQ(read_text_file(dir.file("real/target.txt")), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(dir.file("link.txt")));
    EXPECT_EQ(folder_entry_count(dir.path()), 2u);
    EXPECT_EQ(folder_entry_count(dir.file("real")), 1u);
}

TEST(FileReplacement, AFullDeviceFailsAndStaysADevice) {
    struct stat before {};
    if (::stat("/dev/full", &before) != 0) GTEST_SKIP() << "no /dev/full";
    EXPECT_FALSE(write_file_atomically("/dev/full", std::string(100000, 'x')));
    struct stat after {};
    ASSERT_EQ(::stat("/dev/full", &after), 0);
    EXPECT_TRUE(S_ISCHR(after.st_mode));
    EXPECT_EQ(after.st_rdev, before.st_rdev);
}

TEST(FileReplacement, AFifoIsWrittenInPlace) {
    const TempDir dir;
    const std::string pipe = dir.file("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0644), 0);
    // Without a reader the write fails at once instead of waiting for one.
    EXPECT_FALSE(write_file_atomically(pipe, "x"));
    const int reader = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    EXPECT_TRUE(write_file_atomically(pipe, "through the pipe"));
    char received[64] = {};
    EXPECT_EQ(::read(reader, received, sizeof received), 16);
    EXPECT_STREQ(received, "through the pipe");
    ::close(reader);
    EXPECT_EQ(folder_entry_count(dir.path()), 1u);
}

} // namespace
