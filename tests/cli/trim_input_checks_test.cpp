// trim checks its input's sample rate and channel count as plot does, with the same messages,
// before any work: a 44-byte header claiming an absurd rate must not make it size a sync template
// from that rate. Each run is held to a 1 GB address space and a few seconds.
#include "cli_test_support.h"
#include "support/temp_dir.h"
#include "support/wav_fixture.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace {

// A 44-byte file: a 16-bit PCM fmt chunk with the given rate and channels and an empty data chunk.
std::string header_only(const TempDir& dir, std::uint32_t rate, std::uint16_t channels) {
    FixtureFmt fmt;
    fmt.sample_rate = rate;
    fmt.channels = channels;
    const std::vector<FixtureChunk> chunks{fixture_fmt_chunk(fmt),
                                           fixture_int_data(16, std::vector<std::int64_t>{})};
    const std::string path = dir.file("header.wav");
    EXPECT_TRUE(fixture_write_file(path, fixture_wav_bytes(chunks)));
    return path;
}

ProcessOutput run_limited(const std::vector<std::string>& args) {
    const TempDir working;
    ProcessLimits limits;
#ifndef __SANITIZE_ADDRESS__
    // AddressSanitizer reserves far more address space than this for its own bookkeeping, so the
    // sanitizer build runs without the limit and relies on the alarm.
    limits.address_space = 1ul << 30;
#endif
    limits.seconds = 20;
    return run_sonalyx_in(working.path(), args, limits);
}

std::string rate_message(std::uint32_t rate) {
    return "error: --input sample rate " + std::to_string(rate) +
           " Hz is outside the supported range [22050, 192000] Hz\n";
}

TEST(TrimInputChecks, AbsurdRatesAreRefusedBeforeAnyWork) {
    for (const std::uint32_t rate : {0x7FFFFFFFu, 0xFFFFFFFFu, 1u, 3u, 22049u, 192001u}) {
        const TempDir dir;
        const std::string input = header_only(dir, rate, 1);
        for (const char* command : {"trim", "plot"}) {
            const ProcessOutput run =
                run_limited({command, "--input", input, "--out", dir.file("out.x")});
            EXPECT_EQ(run.exit_status, 1) << command << " " << rate;
            EXPECT_EQ(run.err, rate_message(rate)) << command;
            EXPECT_FALSE(path_exists(dir.file("out.x")));
        }
    }
}

TEST(TrimInputChecks, ChannelCountIsCheckedAsForPlot) {
    const TempDir dir;
    const std::string input = header_only(dir, 48000, 3);
    for (const char* command : {"trim", "plot"}) {
        const ProcessOutput run = run_limited({command, "--input", input, "--out", dir.file("o")});
        EXPECT_EQ(run.exit_status, 1);
        EXPECT_EQ(run.err,
                  "error: --input has 3 channel(s) -- sonalyx only accepts mono or stereo input\n");
    }
}

TEST(TrimInputChecks, RateAndChannelsAreToldAtOnce) {
    const TempDir dir;
    const std::string input = header_only(dir, 8000, 6);
    const ProcessOutput run = run_limited({"trim", "--input", input, "--out", dir.file("o.wav")});
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err, rate_message(8000) +
                           "error: --input has 6 channel(s) -- sonalyx only accepts mono or stereo "
                           "input\n");
}

TEST(TrimInputChecks, ASupportedEmptyFileGetsAsFarAsTheToneSearch) {
    const TempDir dir;
    const std::string input = header_only(dir, 48000, 1);
    const ProcessOutput run = run_limited({"trim", "--input", input, "--out", dir.file("o.wav")});
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_TRUE(run.err.ends_with("error: sync tone not detected (leading)\n")) << run.err;
}

} // namespace
