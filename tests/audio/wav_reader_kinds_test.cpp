// Paths that do not name a regular file are refused by their type, before anything is read: a
// FIFO without a writer returns at once instead of blocking, /dev/zero is not read without end.
// Both reasons say "not a regular file".
#include "audio/wav_reader.h"
#include "wav_test_util.h"

#include <sys/stat.h>

namespace {

constexpr const char* kNotRegular = "not a regular file";

class WavReaderKinds : public WavTest {
  protected:
    void expect_not_regular(const std::string& path) {
        WavFile file = filled_record();
        EXPECT_FALSE(wav_read(path.c_str(), file)) << path;
        expect_zeroed(file);
        EXPECT_STREQ(wav_error_text(), kNotRegular) << path;
        EXPECT_EQ(wav_failure_reason(path.c_str()), kNotRegular) << path;
    }
};

TEST_F(WavReaderKinds, FifoWithoutWriter) {
    const std::string path = path_of("pipe.wav");
    ASSERT_EQ(::mkfifo(path.c_str(), 0644), 0);
    expect_not_regular(path);
}

TEST_F(WavReaderKinds, DirectoryAndDevices) {
    const std::string folder = path_of("folder.wav");
    ASSERT_EQ(::mkdir(folder.c_str(), 0755), 0);
    expect_not_regular(folder);
    expect_not_regular("/dev/zero");
    expect_not_regular("/dev/null");
}

TEST_F(WavReaderKinds, ErrorTextIsClearedByTheNextRead) {
    expect_not_regular("/dev/zero");
    WavFile file;
    EXPECT_FALSE(wav_read(path_of("absent.wav").c_str(), file));
    EXPECT_STREQ(wav_error_text(), kGenericWavError);
}

TEST_F(WavReaderKinds, SymbolicLinkToARegularFileIsRead) {
    const std::vector<std::int64_t> codes{1, -1};
    const std::vector<FixtureChunk> chunks{fixture_fmt_chunk(FixtureFmt{}),
                                           fixture_int_data(16, codes)};
    const std::string target = write_fixture("real.wav", fixture_wav_bytes(chunks));
    const std::string link = path_of("link.wav");
    ASSERT_EQ(::symlink(target.c_str(), link.c_str()), 0);
    WavFile file;
    ASSERT_TRUE(wav_read(link.c_str(), file));
    EXPECT_EQ(file.frames, 2u);
}

} // namespace
