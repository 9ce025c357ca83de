#include "trim_fixture.h"

#include "align/sync_tone.h"
#include "audio/wav_reader.h"
#include "support/wav_fixture.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace {

std::string formatted(const char* format, auto... values) {
    char line[512];
    std::snprintf(line, sizeof line, format, values...);
    return line;
}

std::string occurrence_line(const char* which, const SyncDetection& found) {
    std::string line =
        formatted("  %s: channel %d, sample %zu, PSR %.2f, similarity %.3f", which, found.channel,
                  static_cast<std::size_t>(found.position), found.psr, found.similarity);
    if (found.rep_count > 0) {
        line += " (reps:";
        for (int r = 0; r < found.rep_count; ++r) {
            line += formatted(" %.2f", found.rep_psr[r]);
        }
        line += ")";
    }
    return line + "\n";
}

std::string occurrence_entries(const char* which, const SyncDetection& found) {
    std::string text =
        formatted("    \"%s_sample_offset\": %ld,\n", which, static_cast<long>(found.position)) +
        formatted("    \"%s_channel\": %d,\n", which, found.channel) +
        formatted("    \"%s_psr\": %.6f,\n", which, found.psr) +
        formatted("    \"%s_similarity\": %.6f,\n", which, found.similarity);
    for (int r = 0; r < found.rep_count; ++r) {
        text += formatted("    \"%s_rep_psr_%d\": %.6f,\n", which, r, found.rep_psr[r]);
    }
    return text;
}

} // namespace

std::vector<double> sync_tone(std::uint32_t rate) {
    std::vector<double> tone(sync_template_length(rate));
    sync_template_generate(tone, rate);
    return tone;
}

void TrimRun::write(const SyncCaptureLayout& layout, const SyncCapture& capture) const {
    ASSERT_TRUE(fixture_write_file(input, sync_capture_wav_bytes(layout, capture)));
}

ProcessOutput TrimRun::run(const std::vector<std::string>& extra) const {
    std::vector<std::string> args{"trim", "--input", input, "--out", out};
    args.insert(args.end(), extra.begin(), extra.end());
    return run_sonalyx(args);
}

TrimPoints located(const std::string& path, std::size_t window) {
    WavFile file;
    TrimPoints points;
    std::string error;
    EXPECT_TRUE(wav_read(path.c_str(), file));
    EXPECT_TRUE(locate_trim_points(file, window, 6.0, points, error)) << error;
    return points;
}

std::string expected_summary(const std::string& out, const TrimPoints& points) {
    return formatted("wrote %s (%zu clean-signal frames)\n", out.c_str(),
                     points.trim_point - points.sync_point) +
           occurrence_line("leading", points.leading) +
           occurrence_line("trailing", points.trailing);
}

std::string expected_report(const std::string& input, const TrimPoints& points) {
    return "{\n" + formatted("    \"input_file\": \"%s\",\n", input.c_str()) +
           occurrence_entries("leading", points.leading) +
           occurrence_entries("trailing", points.trailing) +
           formatted("    \"sync_point\": %ld,\n", static_cast<long>(points.sync_point)) +
           formatted("    \"trim_point\": %ld\n", static_cast<long>(points.trim_point)) + "}\n";
}
