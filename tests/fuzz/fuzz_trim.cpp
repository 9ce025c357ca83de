// libFuzzer harness for the trim command, run in-process on one WAV file per input (built as
// command_run.h describes; with bit 6 of byte 0 and a rate of 22.05 to 32 kHz the data sits between
// two copies of the sync tone, on every channel or, by bits 3-4 of byte 1, on one, so that the cut
// is often made). The run is "trim --input <file> --out <folder>/clean.wav", with --report
// <folder>/report.json when the input asks for it. The status must be 0 or 1. On 1 the output
// folder must be empty: the clean signal and the report are put in place together or not at all,
// and no temporary file stays. On 0 the folder must hold exactly the files asked for; the clean
// signal must read back in the input's sample rate, channel count and format with fewer frames
// than the input, and with a report exactly the input's frames between its sync_point and
// trim_point, in the values a write in the input's format gives back. An allocation sized by a
// header field (sample rate, channel count, declared sizes) shows up as libFuzzer's out-of-memory
// report under -rss_limit_mb.
#include "align/sync_tone.h"
#include "audio/wav_encode.h"
#include "audio/wav_reader.h"
#include "cli/commands.h"
#include "command_run.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

// Tones only at the lowest rates, where the search's correlation takes 65536 points: in this
// instrumented build that is a few hundred milliseconds per run, twice as long from 44.1 kHz up
// and seconds at 192 kHz.
constexpr std::uint32_t kMinToneRate = 22050;
constexpr std::uint32_t kMaxToneRate = 32000;

// The sync tone on every channel (`which` 0 or 3) or on channel `which` - 1 alone, encoded in the
// file's format.
std::vector<std::uint8_t> tone_bytes(const WavHeaderFields& fields, unsigned which) {
    const std::size_t frames = sync_template_length(fields.sample_rate);
    std::vector<double> tone(frames);
    sync_template_generate(tone, fields.sample_rate);
    std::vector<double> samples(frames * fields.channels, 0.0);
    for (std::size_t f = 0; f < frames; ++f) {
        for (std::uint32_t k = 0; k < fields.channels; ++k) {
            const bool on = which == 0 || which == 3 || k == (which - 1) % fields.channels;
            samples[f * fields.channels + k] = on ? tone[f] : 0.0;
        }
    }
    std::vector<std::uint8_t> bytes(samples.size() * wav_format_bytes(fields.format));
    wav_encode_samples(samples, fields.format, bytes);
    return bytes;
}

// The payload between two copies of the tone; the payload alone at a rate without a tone.
std::vector<std::uint8_t> toned_payload(const WavPlan& plan, std::span<const std::uint8_t> data) {
    const std::uint32_t rate = plan.fields.sample_rate;
    if (rate < kMinToneRate || rate > kMaxToneRate) return {data.begin(), data.end()};
    const std::vector<std::uint8_t> tone = tone_bytes(plan.fields, plan.second_choice);
    std::vector<std::uint8_t> payload(tone);
    payload.insert(payload.end(), data.begin(), data.end());
    payload.insert(payload.end(), tone.begin(), tone.end());
    return payload;
}

std::vector<std::uint8_t> input_file_bytes(const WavPlan& plan, const std::uint8_t* data,
                                           std::size_t size) {
    if (plan.raw) return {data, data + size};
    const std::span<const std::uint8_t> payload = plan_payload(plan.fields, data, size);
    if (!plan.choice) return wav_file_bytes(plan.fields, payload);
    return wav_file_bytes(plan.fields, toned_payload(plan, payload));
}

WavFile read_or_trap(const std::string& path) {
    WavFile file;
    if (!wav_read(path.c_str(), file)) __builtin_trap();
    return file;
}

// The unsigned number after "key": in the report; traps when it is missing.
std::size_t report_number(const std::string& report, const std::string& key) {
    const std::string label = "\"" + key + "\": ";
    const std::size_t at = report.find(label);
    if (at == std::string::npos) __builtin_trap();
    char* end = nullptr;
    const unsigned long long value = std::strtoull(report.c_str() + at + label.size(), &end, 10);
    if (end == report.c_str() + at + label.size()) __builtin_trap();
    return static_cast<std::size_t>(value);
}

// What reading a written sample gives back: integer formats clamp to [-1, 1], so only the most
// negative code changes.
double rewritten(double sample, std::uint32_t format) {
    return wav_format_is_float(format) ? sample : std::max(sample, -1.0);
}

// The report's cut points hold the clean signal's frames, which are the input's between them.
void check_report(const std::string& path, const WavFile& input, const WavFile& clean) {
    const std::string report = read_whole_file(path);
    if (report.rfind("{\n", 0) != 0 || !report.ends_with("}\n")) __builtin_trap();
    const std::size_t sync = report_number(report, "sync_point");
    const std::size_t trim = report_number(report, "trim_point");
    if (trim <= sync || trim > input.frames || trim - sync != clean.frames) __builtin_trap();
    for (std::size_t i = 0; i < clean.samples.size(); ++i) {
        const double expected = input.samples[sync * input.channels + i];
        if (clean.samples[i] != rewritten(expected, input.format)) __builtin_trap();
    }
}

void check_outputs(const RunFolder& folder, bool with_report) {
    if (with_report) {
        expect_entries(folder.out, {"clean.wav", "report.json"});
    } else {
        expect_entries(folder.out, {"clean.wav"});
    }
    const WavFile input = read_or_trap(folder.input);
    const WavFile clean = read_or_trap(folder.out + "/clean.wav");
    if (clean.sample_rate != input.sample_rate || clean.channels != input.channels ||
        clean.format != input.format) {
        __builtin_trap();
    }
    if (clean.frames == 0 || clean.frames >= input.frames) __builtin_trap();
    if (with_report) check_report(folder.out + "/report.json", input, clean);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    silence_standard_output();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const RunFolder& folder = run_folder();
    const WavPlan plan = read_plan(data, size);
    write_whole_file(folder.input, input_file_bytes(plan, data, size));
    std::vector<std::string> args = {"sonalyx",    "trim",  "--input",
                                     folder.input, "--out", folder.out + "/clean.wav"};
    if (plan.second_output) {
        args.push_back("--report");
        args.push_back(folder.out + "/report.json");
    }
    if (run_command(run_trim_command, args) == 0) {
        check_outputs(folder, plan.second_output);
    } else {
        expect_entries(folder.out, {});
    }
    empty_folder(folder.out);
    return 0;
}
