// trim on generated captures: at 44.1, 48 and 96 kHz, mono and stereo, 16-bit, 24-bit and float,
// the output holds exactly the frames placed between the tones (one second of silence, the
// programme, one second of silence) with their original values; also with the tone on one
// channel only, in -40 dBFS noise and after arbitrary delays.
#include "audio/wav_reader.h"
#include "trim_fixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <regex>
#include <string>

namespace {

constexpr std::uint32_t kFloat32 = 0x120;
// Uniform noise with an RMS of 0.01 (-40 dBFS).
const double kMinus40DbfsPeak = 0.01 * std::sqrt(3.0);

// The summary names the frame count, and each occurrence's channel (the tone's, or any when every
// channel has it) and exact position followed by its four chirp PSRs. (The report texts are
// compared byte by byte in the trim command tests.)
void expect_summary(const std::string& out, const TrimRun& r, const SyncCaptureLayout& layout,
                    const SyncCapture& capture) {
    const std::string channel =
        layout.tone_channel ? std::to_string(*layout.tone_channel) : std::string("[0-9]+");
    const std::string psrs = "PSR [0-9.]+, similarity [0-9.]+ \\(reps:( [0-9.]+){4}\\)\n";
    const std::regex expected(
        "wrote " + r.out + " \\(" + std::to_string(capture.clean_end - capture.clean_start) +
        " clean-signal frames\\)\n  leading: channel " + channel + ", sample " +
        std::to_string(layout.lead_frames) + ", " + psrs + "  trailing: channel " + channel +
        ", sample " + std::to_string(capture.clean_end) + ", " + psrs);
    EXPECT_TRUE(std::regex_match(out, expected)) << out;
}

// Runs trim on the capture with the default settings and checks the written file frame by frame.
void expect_exact_trim(const SyncCaptureLayout& layout) {
    const SyncCapture capture = make_sync_capture(layout, sync_tone(layout.rate));
    const TrimRun r;
    r.write(layout, capture);
    const ProcessOutput run = r.run();
    ASSERT_EQ(run.exit_status, 0) << run.err;
    expect_summary(run.out, r, layout, capture);

    WavFile clean;
    ASSERT_TRUE(wav_read(r.out.c_str(), clean));
    EXPECT_EQ(clean.sample_rate, layout.rate);
    EXPECT_EQ(clean.channels, layout.channels);
    EXPECT_EQ(clean.format, layout.format);
    ASSERT_EQ(clean.frames, capture.clean_end - capture.clean_start);
    const std::vector<double> expected =
        sync_capture_rewritten(layout, capture, capture.clean_start, capture.clean_end);
    ASSERT_EQ(clean.samples.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        ASSERT_EQ(clean.samples[i], expected[i]) << "sample " << i;
    }
}

SyncCaptureLayout layout_of(std::uint32_t rate, std::uint32_t channels, std::uint32_t format) {
    SyncCaptureLayout layout;
    layout.rate = rate;
    layout.channels = channels;
    layout.format = format;
    layout.lead_frames = rate / 20 + 173;
    layout.tail_frames = rate / 10;
    layout.programme_frames = rate / 5 + 31;
    layout.seed = rate + channels * 10 + format;
    return layout;
}

// Mono and stereo in 16-bit, 24-bit and float at one rate.
void expect_every_layout_at(std::uint32_t rate) {
    for (const std::uint32_t channels : {1u, 2u}) {
        for (const std::uint32_t format : {16u, 24u, kFloat32}) {
            SCOPED_TRACE(std::to_string(channels) + " channel(s), format " +
                         std::to_string(format));
            expect_exact_trim(layout_of(rate, channels, format));
        }
    }
}

TEST(TrimCapture, EveryLayoutAt44100HzGivesTheFramesBetweenTheTones) {
    expect_every_layout_at(44100);
}

TEST(TrimCapture, EveryLayoutAt48000HzGivesTheFramesBetweenTheTones) {
    expect_every_layout_at(48000);
}

TEST(TrimCapture, EveryLayoutAt96000HzGivesTheFramesBetweenTheTones) {
    expect_every_layout_at(96000);
}

// The search keeps the channel with the greatest PSR. A channel without the tone therefore needs a
// realistic noise floor: over digital silence most of its lags correlate to exactly zero, and the
// few that reach the programme then give it a larger PSR than the tone channel's.
TEST(TrimCapture, ToneOnEitherChannelIsFoundThere) {
    for (const std::uint32_t channel : {0u, 1u}) {
        SCOPED_TRACE(channel);
        SyncCaptureLayout layout = layout_of(48000, 2, 24);
        layout.tone_channel = channel;
        layout.noise_peak = kMinus40DbfsPeak;
        expect_exact_trim(layout);
    }
}

TEST(TrimCapture, TheSecondChannelIsSearchedToo) {
    SyncCaptureLayout layout = layout_of(48000, 2, 16);
    layout.tone_channel = 1;
    layout.noise_peak = kMinus40DbfsPeak;
    const SyncCapture capture = make_sync_capture(layout, sync_tone(layout.rate));
    const TrimRun r;
    r.write(layout, capture);
    const ProcessOutput run = r.run();
    ASSERT_EQ(run.exit_status, 0) << run.err;
    EXPECT_NE(run.out.find("  leading: channel 1, sample 2573,"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("  trailing: channel 1, sample "), std::string::npos);
}

TEST(TrimCapture, AWiderFileIsRefusedAsPlotRefusesIt) {
    SyncCaptureLayout layout = layout_of(48000, 3, 16);
    layout.tone_channel = 2;
    const TrimRun r;
    r.write(layout, make_sync_capture(layout, sync_tone(layout.rate)));
    const ProcessOutput run = r.run();
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err,
              "error: --input has 3 channel(s) -- sonalyx only accepts mono or stereo input\n");
    EXPECT_FALSE(path_exists(r.out));
}

TEST(TrimCapture, NoiseAtMinus40DbfsKeepsTheCutExact) {
    for (const std::uint32_t format : {16u, 24u, kFloat32}) {
        SCOPED_TRACE(format);
        SyncCaptureLayout layout = layout_of(48000, 2, format);
        layout.noise_peak = kMinus40DbfsPeak;
        expect_exact_trim(layout);
    }
}

TEST(TrimCapture, ArbitraryDelaysBeforeTheToneAreFollowed) {
    for (const std::size_t delay : {0u, 1u, 4801u, 33333u}) {
        SCOPED_TRACE(delay);
        SyncCaptureLayout layout = layout_of(44100, 1, 24);
        layout.lead_frames = delay;
        layout.noise_peak = 0.01;
        expect_exact_trim(layout);
    }
}

} // namespace
