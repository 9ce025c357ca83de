// trim's reports and failures: the text summary and the JSON report compared exactly, the capped
// search window and its note, the settings from the defaults file, tones that are missing, buried
// in noise or not after each other, and outputs that cannot be written.
#include "audio/wav_reader.h"
#include "folder_snapshot.h"
#include "support/signal_gen.h"
#include "trim_fixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <numbers>
#include <string>
#include <vector>

namespace {

SyncCaptureLayout short_layout() {
    SyncCaptureLayout layout;
    layout.channels = 2;
    layout.lead_frames = 5000;
    layout.tail_frames = 7000;
    layout.programme_frames = 24000;
    return layout;
}

struct WrittenCapture {
    TrimRun run;
    SyncCaptureLayout layout;
    SyncCapture capture;
    explicit WrittenCapture(const SyncCaptureLayout& l)
        : layout(l), capture(make_sync_capture(l, sync_tone(l.rate))) {
        run.write(layout, capture);
    }
};

std::string capped_note(double seconds, std::size_t requested, double capped_seconds,
                        std::size_t capped) {
    char line[512];
    std::snprintf(line, sizeof line,
                  "note: sync_search_window_sec=%.1fs (%zu samples) exceeds half this file's "
                  "length -- capped to %.2fs (%zu samples) so the leading/trailing searches can't "
                  "overlap (see the technical guide's alignment section)\n",
                  seconds, requested, capped_seconds, capped);
    return line;
}

std::string defaults_file(const TrimRun& r, const std::string& alignment) {
    const std::string path = r.dir.file("defaults.cfg");
    EXPECT_TRUE(write_text_file(path, "{ \"alignment\": { " + alignment + " } }"));
    return path;
}

TEST(TrimCommand, TextSummaryEndsEachLineWithTheFourChirpPsrs) {
    const WrittenCapture c(short_layout());
    const ProcessOutput run = c.run.run();
    ASSERT_EQ(run.exit_status, 0) << run.err;
    const TrimPoints points = located(c.run.input, c.capture.frames / 2);
    EXPECT_EQ(run.out, expected_summary(c.run.out, points));
    EXPECT_EQ(points.leading.rep_count, 4);
    EXPECT_EQ(points.leading.position, 5000u);
    EXPECT_EQ(points.trailing.position, c.capture.clean_end);
    const std::string first_line = "wrote " + c.run.out + " (120000 clean-signal frames)\n";
    EXPECT_EQ(run.out.substr(0, first_line.size()), first_line);
    EXPECT_NE(run.out.find("  leading: channel 0, sample 5000, PSR "), std::string::npos);
    EXPECT_NE(run.out.find(", similarity 1.000 (reps: "), std::string::npos);
}

TEST(TrimCommand, JsonReportHoldsTheKeysInOrder) {
    const WrittenCapture c(short_layout());
    const ProcessOutput run = c.run.run({"--report", c.run.report});
    ASSERT_EQ(run.exit_status, 0) << run.err;
    EXPECT_EQ(run.out,
              "wrote " + c.run.out + " (120000 clean-signal frames) + " + c.run.report + "\n");
    const TrimPoints points = located(c.run.input, c.capture.frames / 2);
    const std::string report = read_text_file(c.run.report);
    EXPECT_EQ(report, expected_report(c.run.input, points));
    EXPECT_NE(report.find("    \"leading_rep_psr_3\": "), std::string::npos);
    EXPECT_NE(report.find("    \"sync_point\": 41000,\n    \"trim_point\": 161000\n}\n"),
              std::string::npos);
}

TEST(TrimCommand, SixtySecondFileCapsTheDefaultWindowAndStillTrims) {
    SyncCaptureLayout layout;
    layout.lead_frames = 48000;
    layout.tail_frames = 48000;
    layout.programme_frames = 60 * 48000 - 2 * 36000 - 2 * 48000 - 2 * 48000;
    const WrittenCapture c(layout);
    ASSERT_EQ(c.capture.frames, 2880000u);
    const ProcessOutput run = c.run.run();
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.err, capped_note(45.0, 2160000, 30.0, 1440000));
    WavFile clean;
    ASSERT_TRUE(wav_read(c.run.out.c_str(), clean));
    EXPECT_EQ(clean.frames, c.capture.clean_end - c.capture.clean_start);
}

TEST(TrimCommand, FileShorterThanTwoTonesCannotHoldTheLeadingTone) {
    SyncCaptureLayout layout; // 1.4 s: the capped window of 0.7 s is shorter than the 0.75 s tone
    const std::vector<double> tone = sync_tone(48000);
    SyncCapture capture;
    capture.frames = 67200;
    capture.samples.assign(capture.frames, 0.0);
    std::copy(tone.begin(), tone.end(), capture.samples.begin() + 100);
    const TrimRun r;
    r.write(layout, capture);
    const ProcessOutput run = r.run();
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err,
              capped_note(45.0, 2160000, 0.7, 33600) + "error: sync tone not detected (leading)\n");
    EXPECT_FALSE(path_exists(r.out));
}

TEST(TrimCommand, MissingTrailingToneIsReported) {
    SyncCaptureLayout layout = short_layout();
    layout.tail_frames =
        60000; // the trailing window then holds only the (removed) tone and silence
    SyncCapture capture = make_sync_capture(layout, sync_tone(layout.rate));
    std::fill(capture.samples.begin() + capture.clean_end * 2, capture.samples.end(), 0.0);
    const TrimRun r;
    r.write(layout, capture);
    const ProcessOutput run = r.run();
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err, capped_note(45.0, 2160000, 128500 / 48000.0, 128500) +
                           "error: PSR below threshold (trailing): got 0.00, need 6.00\n");
    EXPECT_FALSE(path_exists(r.out));
}

// Loud narrow-band noise in the tones' band around a clean tone, in a float file that can hold
// it: the tone still matches itself exactly, but the noise's correlation lifts the sidelobes.
TEST(TrimCommand, ToneBuriedInLoudNoiseGivesThePsrMessage) {
    SyncCaptureLayout layout = short_layout();
    layout.channels = 1;
    layout.format = 0x120;
    const std::vector<double> tone = sync_tone(layout.rate);
    SyncCapture capture = make_sync_capture(layout, tone);
    SignalRng rng = signal_rng(5);
    for (std::size_t n = 0; n < capture.frames; ++n) {
        const bool in_tone = (n >= 5000 && n < capture.clean_start) || n >= capture.clean_end;
        if (in_tone) continue;
        const double level = 2.5 * signal_next_uniform(rng, 0.8, 1.0);
        capture.samples[n] = static_cast<float>(
            level * std::sin(2.0 * std::numbers::pi * 3000.0 * static_cast<double>(n) / 48000.0));
    }
    const TrimRun r;
    r.write(layout, capture);
    WavFile file;
    ASSERT_TRUE(wav_read(r.input.c_str(), file));
    const SyncDetection leading = find_sync_tone(file, 0, file.frames / 2, 6.0, 0.12);
    ASSERT_EQ(leading.position, 5000u);
    ASSERT_LT(leading.psr, 6.0);
    ASSERT_GT(leading.similarity, 0.99);
    char message[128];
    std::snprintf(message, sizeof message,
                  "error: PSR below threshold (leading): got %.2f, need 6.00\n", leading.psr);
    const ProcessOutput run = r.run({"--report", r.report});
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err, capped_note(45.0, 2160000, 2.125, 102000) + message);
    EXPECT_FALSE(path_exists(r.report));
    EXPECT_FALSE(path_exists(r.out));
}

TEST(TrimCommand, SettingsComeFromTheDefaultsFile) {
    const WrittenCapture c(short_layout());
    const std::string strict = defaults_file(c.run, "\"sync_psr_threshold\": 1000");
    ProcessOutput run = c.run.run({"--defaults-cfg", strict});
    EXPECT_EQ(run.exit_status, 1);
    const TrimPoints points = located(c.run.input, c.capture.frames / 2);
    char message[128];
    std::snprintf(message, sizeof message,
                  "error: PSR below threshold (leading): got %.2f, need 1000.00\n",
                  points.leading.psr);
    EXPECT_EQ(run.err, capped_note(45.0, 2160000, 2.125, 102000) + message);

    const std::string window = defaults_file(c.run, "\"sync_search_window_sec\": 1.5");
    run = c.run.run({"--defaults-cfg", window});
    EXPECT_EQ(run.exit_status, 0);
    EXPECT_EQ(run.err, ""); // 72000 samples fit in half the file: no note
    EXPECT_EQ(run.out, expected_summary(c.run.out, located(c.run.input, 72000)));
}

TEST(TrimCommand, EqualPsrOnBothChannelsReportsChannelZero) {
    const WrittenCapture c(short_layout()); // the same tone on both channels
    const ProcessOutput run = c.run.run();
    ASSERT_EQ(run.exit_status, 0);
    EXPECT_NE(run.out.find("  leading: channel 0,"), std::string::npos);
    EXPECT_NE(run.out.find("  trailing: channel 0,"), std::string::npos);
}

TEST(TrimCommand, TrailingToneStartingWhereTheLeadingOneEndsIsNotAfterIt) {
    const std::vector<double> tone = sync_tone(48000);
    SyncCaptureLayout layout;
    SyncCapture capture;
    capture.frames = 2 * (tone.size() + 20000); // the tones meet in the middle of the file
    capture.samples.assign(capture.frames, 0.0);
    std::copy(tone.begin(), tone.end(), capture.samples.begin() + 20000);
    std::copy(tone.begin(), tone.end(), capture.samples.begin() + 20000 + tone.size());
    const TrimRun r;
    r.write(layout, capture);
    const ProcessOutput run = r.run();
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.err, capped_note(45.0, 2160000, 1.17, 56000) +
                           "error: trailing occurrence (sample 56000) is not after the leading "
                           "occurrence ends (sample 56000) -- check the input file\n");
    EXPECT_FALSE(path_exists(r.out));
}

TEST(TrimCommand, UnwritableOutputIsReported) {
    const WrittenCapture c(short_layout());
    const std::string out = c.run.dir.file("missing/clean.wav");
    const ProcessOutput run =
        run_sonalyx({"trim", "--input", c.run.input, "--out", out, "--report", c.run.report});
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err,
              capped_note(45.0, 2160000, 2.125, 102000) + "error: failed to write '" + out + "'\n");
    EXPECT_FALSE(path_exists(c.run.report));
}

TEST(TrimCommand, AReportThatCannotBeWrittenLeavesNoSignalEither) {
    // The clean signal and its report are one set: neither is written, nothing is left behind.
    const WrittenCapture c(short_layout());
    const std::string report = c.run.dir.file("missing/sync.json");
    const FolderSnapshot before = snapshot_folder(c.run.dir.path());
    const ProcessOutput run = c.run.run({"--report", report});
    EXPECT_EQ(run.exit_status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, capped_note(45.0, 2160000, 2.125, 102000) + "error: failed to write '" +
                           report + "'\n");
    EXPECT_FALSE(path_exists(c.run.out));
    EXPECT_EQ(snapshot_folder(c.run.dir.path()), before);
}

} // namespace
