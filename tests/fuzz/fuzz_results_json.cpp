// libFuzzer harness for the results JSON and the ERROR JSON. The input fills a RunResults (paths
// as arbitrary bytes without NUL, an error text with them, one or two channels, counts, offsets,
// verdicts, which checks ran, finite measurements, a few spectral snapshots) and an error text. A
// built text must be a flat JSON object exactly as the writers promise: "{\n", lines `    "key":
// value` with a comma on every line but the last, "}\n"; string values in the strict escaping of
// strict_json.h, integers, or %.6f reals; every key once. The paths, the error text and a few other
// values must read back as given, and a check's verdict key must be there exactly when it ran. With
// finite measurements and memory to spare a build never fails, however long or odd its texts.
#include "results/json_entries.h"
#include "results/results_json.h"
#include "results/run_results.h"
#include "strict_json.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <string_view>

namespace {

// Texts long enough that no fixed line or value size could hold them all.
constexpr std::size_t kMaxTextLength = 2000;
constexpr std::size_t kMaxSnapshots = 6;

struct Source {
    FuzzedDataProvider& in;
};

// A measurement: usually within a few thousand, sometimes any bit pattern or anywhere in the
// finite range. NaN and infinity become -999 since the measurements never produce them.
double real(Source& s) {
    double value = 0.0;
    switch (s.in.ConsumeIntegralInRange<int>(0, 3)) {
    case 0:
        value = s.in.ConsumeFloatingPointInRange<double>(-5000.0, 5000.0);
        break;
    case 1:
        value = s.in.ConsumeProbability<double>();
        break;
    case 2:
        value = std::bit_cast<double>(s.in.ConsumeIntegral<std::uint64_t>());
        break;
    default:
        value = s.in.ConsumeFloatingPoint<double>();
        break;
    }
    if (!std::isfinite(value)) value = -999.0;
    return value;
}

std::uint64_t count(Source& s) {
    return s.in.ConsumeIntegral<std::uint64_t>();
}

bool flag(Source& s) {
    return s.in.ConsumeBool();
}

// Arbitrary bytes; without NUL unless `keep_nul` (paths are C strings, the error text is not).
std::string text(Source& s, bool keep_nul = false) {
    std::string value = s.in.ConsumeRandomLengthString(kMaxTextLength);
    if (!keep_nul) std::erase(value, '\0');
    return value;
}

std::uint32_t channel_count(Source& s) {
    return s.in.ConsumeBool() ? 2u : 1u;
}

void fill_file(Source& s, FileFacts& file, std::uint32_t channels) {
    constexpr std::uint32_t kDepths[] = {16, 24, 32, 64};
    file.path = text(s);
    file.sample_rate = s.in.ConsumeIntegral<std::uint32_t>();
    file.channels = channels;
    file.bit_depth = kDepths[s.in.ConsumeIntegralInRange<int>(0, 3)];
    file.is_float = flag(s);
    file.frames = s.in.ConsumeIntegral<std::size_t>();
}

void fill_alignment(Source& s, AlignmentResult& alignment, std::uint32_t channels) {
    alignment.channels = channels;
    alignment.file_offset = s.in.ConsumeIntegral<std::int64_t>();
    alignment.disagreement = s.in.ConsumeIntegral<std::int64_t>();
    alignment.aligned = flag(s);
    for (std::uint32_t c = 0; c < channels; ++c) {
        ChannelAlignment& channel = alignment.channel[c];
        channel.ok = flag(s);
        channel.offset = s.in.ConsumeIntegral<std::int64_t>();
        channel.confidence = real(s);
        channel.ref_silent = flag(s);
        channel.dut_silent = flag(s);
        channel.state =
            static_cast<AlignmentState>(s.in.ConsumeIntegralInRange<std::uint32_t>(0, 2));
    }
}

void fill_length_mismatch(Source& s, LengthMismatch& mismatch) {
    mismatch.failed = flag(s);
    mismatch.uncovered_pct = real(s);
    mismatch.uncovered_samples = s.in.ConsumeIntegral<std::int64_t>();
    mismatch.shared_frames = s.in.ConsumeIntegral<std::size_t>();
}

void fill_bit_compare(Source& s, CheckBlock<BitCompareResult>& block) {
    block.ran = flag(s);
    BitCompareResult& r = block.result;
    r.passed = flag(s);
    r.samples_compared = count(s);
    r.samples_differing = count(s);
    r.first_diff_frame = count(s);
    r.first_diff_channel = s.in.ConsumeIntegralInRange<std::uint32_t>(0, 1);
    r.first_diff_ref_value = real(s);
    r.first_diff_dut_value = real(s);
    r.max_error_db = real(s);
    r.worst_diff_frame = count(s);
    r.worst_diff_channel = s.in.ConsumeIntegralInRange<std::uint32_t>(0, 1);
    r.worst_diff_ref_value = real(s);
    r.worst_diff_dut_value = real(s);
}

void fill_level_channel(Source& s, LevelFidelityChannel& c) {
    c.passed = flag(s);
    c.samples_included = count(s);
    c.samples_excluded = count(s);
    c.median_db = real(s);
    c.mad_db = real(s);
    c.p99_abs_db = real(s);
    c.has_data = flag(s);
    c.worst_sample = count(s);
    c.worst_diff_db = real(s);
    c.worst_ref_amp = real(s);
    c.worst_dut_amp = real(s);
    c.longest_sustained_run_ms = real(s);
    c.sustained_fail = flag(s);
}

void fill_level_fidelity(Source& s, CheckBlock<LevelFidelityResult>& block,
                         std::uint32_t channels) {
    block.ran = flag(s);
    block.result.channels = channels;
    block.result.passed = flag(s);
    for (std::uint32_t c = 0; c < channels; ++c)
        fill_level_channel(s, block.result.channel[c]);
}

void fill_artifact_channel(Source& s, ArtifactChannelResult& c) {
    c.passed = flag(s);
    c.samples_checked = count(s);
    c.samples_excluded = count(s);
    c.samples_flagged = count(s);
    c.event_count = count(s);
    c.counted_event_count = count(s);
    c.minor_event_count = count(s);
    c.first_event_start_frame = count(s);
    c.first_event_length = count(s);
    c.worst_event_start_frame = count(s);
    c.worst_event_length = count(s);
    c.worst_event_counted = flag(s);
    c.worst_event_global_severity = real(s);
    c.worst_event_severity = real(s);
    c.worst_event_deviation_ratio = real(s);
}

void fill_artifact(Source& s, CheckBlock<ArtifactResult>& block, std::uint32_t channels) {
    block.ran = flag(s);
    block.result.channels = channels;
    block.result.passed = flag(s);
    for (std::uint32_t c = 0; c < channels; ++c)
        fill_artifact_channel(s, block.result.channel[c]);
}

void fill_spectral_channel(Source& s, SpectralChannelResult& c) {
    c.passed = flag(s);
    c.frame_gated = flag(s);
    c.insufficient_samples = flag(s);
    c.frames_scanned = count(s);
    c.edge_skipped_samples = count(s);
    c.frames_gated = count(s);
    // Sometimes no bins, which leaves the ratio figures out of a snapshot.
    c.bins_compared = flag(s) ? 0 : count(s);
    c.bins_excluded = count(s);
    c.bins_failed = count(s);
    c.p50_ratio = real(s);
    c.p95_ratio = real(s);
    c.p99_ratio = real(s);
    c.worst_ratio = real(s);
    c.worst_diff_db = real(s);
    c.worst_freq_hz = real(s);
    c.worst_is_peak = flag(s);
}

void fill_snapshots(Source& s, SpectralSnapshotsResult& r, std::uint32_t channels) {
    r.channels = channels;
    r.insufficient_samples = flag(s);
    r.passed = flag(s);
    r.snapshots.resize(s.in.ConsumeIntegralInRange<std::size_t>(0, kMaxSnapshots));
    for (SpectralSnapshot& snapshot : r.snapshots) {
        snapshot.time_sec = real(s);
        snapshot.start_frame = count(s);
        for (std::uint32_t c = 0; c < channels; ++c)
            fill_spectral_channel(s, snapshot.channel[c]);
    }
}

void fill_spectral(Source& s, CheckBlock<SpectralOutcome>& block, std::uint32_t channels) {
    block.ran = flag(s);
    SpectralOutcome& outcome = block.result;
    outcome.snapshot_mode = flag(s);
    if (outcome.snapshot_mode) {
        fill_snapshots(s, outcome.snapshots, channels);
        return;
    }
    outcome.scan.channels = channels;
    outcome.scan.passed = flag(s);
    for (std::uint32_t c = 0; c < channels; ++c)
        fill_spectral_channel(s, outcome.scan.channel[c]);
}

void fill_distortion(Source& s, CheckBlock<DistortionResult>& block, std::uint32_t channels) {
    block.ran = flag(s);
    block.result.channels = channels;
    block.result.passed = flag(s);
    for (std::uint32_t i = 0; i < channels; ++i) {
        DistortionChannelResult& c = block.result.channel[i];
        c.passed = flag(s);
        c.frame_gated = flag(s);
        c.insufficient_samples = flag(s);
        c.frames_scanned = count(s);
        c.frames_gated = count(s);
        c.worst_frame_start = count(s);
        c.fundamental_freq_hz = real(s);
        c.thdn_ratio = real(s);
        c.thdn_db = real(s);
        c.p50_thdn_ratio = real(s);
        c.p95_thdn_ratio = real(s);
    }
}

void fill_loudness_measure(Source& s, LoudnessMeasure& m) {
    m.integrated_lufs = real(s);
    m.range_lu = real(s);
    m.true_peak_dbtp = real(s);
    m.sample_peak_dbfs = real(s);
    m.max_momentary_lufs = real(s);
    m.max_short_term_lufs = real(s);
}

void fill_loudness(Source& s, CheckBlock<LoudnessResult>& block) {
    block.ran = flag(s);
    LoudnessResult& r = block.result;
    fill_loudness_measure(s, r.ref);
    fill_loudness_measure(s, r.dut);
    r.delta_integrated_lu = real(s);
    r.delta_true_peak_db = real(s);
    r.delta_range_lu = real(s);
    r.delta_max_momentary_lu = real(s);
    r.delta_max_short_term_lu = real(s);
    r.delta_sample_peak_db = real(s);
    r.passed = flag(s);
}

void fill_time_domain(Source& s, CheckBlock<TimeDomainResult>& block, std::uint32_t channels) {
    block.ran = flag(s);
    block.result.channels = channels;
    block.result.passed = flag(s);
    for (std::uint32_t i = 0; i < channels; ++i) {
        TimeDomainChannel& c = block.result.channel[i];
        c.passed = flag(s);
        c.samples_included = count(s);
        c.samples_excluded = count(s);
        c.total_fails = count(s);
        c.has_failures = flag(s);
        c.worst_sample = count(s);
        c.worst_diff_pct = real(s);
        c.worst_ref_amp = real(s);
        c.worst_dut_amp = real(s);
        c.worst_tolerance_pct = real(s);
        c.fails_low_level_signal_tier = count(s);
        c.fails_signal_tier = count(s);
        c.fails_peak_tier = count(s);
    }
}

void fill_impulse_template(Source& s, CheckBlock<ImpulseTemplateResult>& block,
                           std::uint32_t channels) {
    block.ran = flag(s);
    block.result.channels = channels;
    block.result.passed = flag(s);
    for (std::uint32_t i = 0; i < channels; ++i) {
        ImpulseTemplateChannel& c = block.result.channel[i];
        c.passed = flag(s);
        c.total_fails = count(s);
        c.has_failures = flag(s);
        c.worst_sample = count(s);
        c.worst_diff = real(s);
        c.worst_ref_amp = real(s);
        c.worst_dut_amp = real(s);
    }
}

// The gating failures as the verdict writes them: the failed checks' names joined by commas.
void fill_overall(Source& s, OverallVerdict& overall) {
    constexpr const char* kNames[] = {"length_mismatch", "bitexact",    "levelfidelity",
                                      "artifact",        "spectral",    "distortion",
                                      "loudness",        "time_domain", "impulse_template"};
    static_assert(std::size(kNames) == kGatingCheckCount);
    for (std::size_t i = 0; i < kGatingCheckCount; ++i) {
        overall.failed[i] = flag(s);
        if (!overall.failed[i]) continue;
        if (!overall.machine_list.empty()) overall.machine_list += ',';
        overall.machine_list += kNames[i];
        ++overall.gating_failure_count;
    }
    overall.passed = overall.gating_failure_count == 0;
}

void fill_settings(Source& s, AnalysisConfig& config) {
    config.bit_accuracy.tolerance_db.value = real(s);
    config.artifact.window_samples.value = s.in.ConsumeIntegral<std::size_t>();
    config.artifact.min_severity.value = real(s);
    config.artifact.min_silence_clip_run.value = s.in.ConsumeIntegral<std::size_t>();
    config.artifact.min_global_severity.value = real(s);
}

void fill_results(Source& s, RunResults& results) {
    const std::uint32_t channels = channel_count(s);
    fill_file(s, results.ref, channels);
    fill_file(s, results.dut, channel_count(s));
    results.sample_rate = s.in.ConsumeIntegral<std::uint32_t>();
    fill_alignment(s, results.alignment, channels);
    fill_length_mismatch(s, results.length_mismatch);
    fill_bit_compare(s, results.bit_exact);
    fill_bit_compare(s, results.bit_accuracy);
    fill_level_fidelity(s, results.level_fidelity, channels);
    fill_artifact(s, results.artifact, channels);
    fill_spectral(s, results.spectral, channels);
    fill_distortion(s, results.distortion, channels);
    fill_loudness(s, results.loudness);
    fill_time_domain(s, results.time_domain, channels);
    fill_impulse_template(s, results.impulse_template, channels);
    fill_overall(s, results.overall);
    fill_settings(s, results.config);
}

// One value as read back: a decoded string, or a number exactly as written.
struct FlatValue {
    bool is_text = false;
    std::string text;
};

using FlatObject = std::map<std::string, FlatValue, std::less<>>;

bool key_is_plain(std::string_view key) {
    if (key.empty()) return false;
    for (const char c : key) {
        if (!((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_')) return false;
    }
    return true;
}

// Takes a quoted string from the front of `rest` and decodes its contents.
bool take_text(std::string_view& rest, std::string& decoded) {
    std::size_t end = 1;
    while (end < rest.size() && rest[end] != '"') {
        end += rest[end] == '\\' ? 2 : 1;
    }
    if (end >= rest.size()) return false;
    if (!decode_json_contents(rest.substr(1, end - 1), decoded)) return false;
    rest.remove_prefix(end + 1);
    return true;
}

// Takes the run of digits at the front of `rest`, which may be empty.
std::string_view take_digits(std::string_view& rest) {
    std::size_t end = 0;
    while (end < rest.size() && rest[end] >= '0' && rest[end] <= '9') {
        ++end;
    }
    const std::string_view digits = rest.substr(0, end);
    rest.remove_prefix(end);
    return digits;
}

// Takes an integer as %d or %ld writes it, or a real as %.6f writes it, from the front of `rest`.
bool take_number(std::string_view& rest, std::string& token) {
    const std::string_view start = rest;
    const bool negative = rest.starts_with('-');
    if (negative) rest.remove_prefix(1);
    const std::string_view whole = take_digits(rest);
    if (whole.empty() || (whole.size() > 1 && whole[0] == '0')) return false;
    if (rest.starts_with('.')) {
        rest.remove_prefix(1);
        if (take_digits(rest).size() != 6) return false;
    } else if (negative && whole == "0") {
        return false;
    }
    token = start.substr(0, start.size() - rest.size());
    return true;
}

// One entry line without its newline: `    "key": value` and a comma unless it is the last.
bool parse_line(std::string_view line, bool last, FlatObject& object) {
    constexpr std::string_view kIndent = "    \"";
    if (!line.starts_with(kIndent)) return false;
    line.remove_prefix(kIndent.size());
    const std::size_t key_end = line.find('"');
    if (key_end == std::string_view::npos || !key_is_plain(line.substr(0, key_end))) return false;
    const std::string key(line.substr(0, key_end));
    line.remove_prefix(key_end);
    if (!line.starts_with("\": ")) return false;
    line.remove_prefix(3);
    FlatValue value;
    value.is_text = line.starts_with('"');
    if (!(value.is_text ? take_text(line, value.text) : take_number(line, value.text)))
        return false;
    if (line != (last ? "" : ",")) return false;
    return object.emplace(key, value).second;
}

bool parse_flat_json(std::string_view text, FlatObject& object) {
    if (text.size() < 4 || !text.starts_with("{\n") || !text.ends_with("}\n")) return false;
    std::string_view body = text.substr(2, text.size() - 4);
    if (body.empty()) return false;
    while (!body.empty()) {
        const std::size_t end = body.find('\n');
        if (end == std::string_view::npos) return false;
        if (!parse_line(body.substr(0, end), end + 1 == body.size(), object)) return false;
        body.remove_prefix(end + 1);
    }
    return true;
}

void expect_text(const FlatObject& object, std::string_view key, std::string_view value) {
    const auto found = object.find(key);
    if (found == object.end() || !found->second.is_text || found->second.text != value)
        __builtin_trap();
}

void expect_number(const FlatObject& object, std::string_view key, std::string_view value) {
    const auto found = object.find(key);
    if (found == object.end() || found->second.is_text || found->second.text != value)
        __builtin_trap();
}

// A check's verdict key is written exactly when the check ran.
void expect_verdict(const FlatObject& object, std::string_view key, bool ran, bool passed) {
    if (ran) {
        expect_text(object, key, verdict_text(passed));
    } else if (object.contains(key)) {
        __builtin_trap();
    }
}

std::string real_text(double value) {
    char text[400];
    std::snprintf(text, sizeof text, "%.6f", value);
    return text;
}

void check_results_values(const FlatObject& object, const RunResults& r) {
    expect_number(object, "sonalyx_phase", "2");
    expect_text(object, "status", "analyzed");
    expect_text(object, "overall_verdict", verdict_text(r.overall.passed));
    expect_text(object, "gating_failures", r.overall.machine_list);
    expect_text(object, "ref_file", r.ref.path);
    expect_text(object, "dut_file", r.dut.path);
    expect_number(object, "ref_frame_count", std::to_string(static_cast<long>(r.ref.frames)));
    expect_number(object, "align_file_offset", std::to_string(r.alignment.file_offset));
    expect_number(object, "length_mismatch_ref_uncovered_pct",
                  real_text(r.length_mismatch.uncovered_pct));
    expect_verdict(object, "bitexact_verdict", r.bit_exact.ran, r.bit_exact.result.passed);
    expect_verdict(object, "bit_accuracy_verdict", r.bit_accuracy.ran,
                   r.bit_accuracy.result.passed);
    expect_verdict(object, "levelfidelity_verdict", r.level_fidelity.ran,
                   r.level_fidelity.result.passed);
    expect_verdict(object, "artifact_verdict", r.artifact.ran, r.artifact.result.passed);
    expect_verdict(object, "spectral_verdict", r.spectral.ran, spectral_passed(r.spectral.result));
    expect_verdict(object, "distortion_verdict", r.distortion.ran, r.distortion.result.passed);
    expect_verdict(object, "loudness_verdict", r.loudness.ran, r.loudness.result.passed);
    expect_verdict(object, "time_domain_verdict", r.time_domain.ran, r.time_domain.result.passed);
    expect_verdict(object, "impulse_template_verdict", r.impulse_template.ran,
                   r.impulse_template.result.passed);
}

void check_results_json(FuzzedDataProvider& in) {
    Source s{in};
    RunResults results;
    fill_results(s, results);
    // Every value is finite and memory is plentiful: the build cannot fail.
    std::string json = "left over";
    if (!build_results_json(results, json)) __builtin_trap();
    FlatObject object;
    if (!parse_flat_json(json, object)) __builtin_trap();
    check_results_values(object, results);
}

void check_error_json(FuzzedDataProvider& in) {
    Source s{in};
    const std::string error = text(s, true);
    const std::string ref = text(s);
    const std::string dut = text(s);
    std::string json = "left over";
    if (!build_error_json(error, ref.c_str(), dut.c_str(), json)) __builtin_trap();
    FlatObject object;
    if (!parse_flat_json(json, object) || object.size() != 6) __builtin_trap();
    expect_number(object, "sonalyx_phase", "2");
    expect_text(object, "status", "error");
    expect_text(object, "overall_verdict", "ERROR");
    expect_text(object, "error", error);
    expect_text(object, "ref_file", ref);
    expect_text(object, "dut_file", dut);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    check_error_json(in);
    check_results_json(in);
    return 0;
}
