#include "support/artifact_reference.h"

#include "support/neighbourhood_reference.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

// One flagged sample and its deviations.
struct Flag {
    std::uint64_t frame = 0;
    double z_local = 0.0;
    double z_global = 0.0;
    bool silence_clip = false;
};

// One run of flagged samples in consecutive frames.
struct Run {
    std::uint64_t start = 0;
    std::uint64_t length = 0;
    double local_peak = 0.0;
    double global_peak = 0.0;
    std::uint64_t longest_silence_clip = 0;
};

bool silence_or_clip(double r, double d, bool float_dut) {
    if (r != 0.0 && d == 0.0) return true;
    if (float_dut) {
        return std::fabs(std::fabs(d) - 1.0) < 1e-9 && std::fabs(std::fabs(r) - 1.0) >= 1e-9;
    }
    return std::fabs(d) >= 0.999 && std::fabs(r) < 0.999;
}

Run judge(const std::vector<Flag>& flags, std::size_t first, std::size_t end, double k) {
    Run run;
    run.start = flags[first].frame;
    run.length = end - first;
    std::uint64_t stretch = 0;
    for (std::size_t i = first; i < end; ++i) {
        run.local_peak = std::max(run.local_peak, flags[i].z_local);
        if (flags[i].z_local > k) run.global_peak = std::max(run.global_peak, flags[i].z_global);
        stretch = flags[i].silence_clip ? stretch + 1 : 0;
        run.longest_silence_clip = std::max(run.longest_silence_clip, stretch);
    }
    return run;
}

bool counts(const Run& run, const ReferenceArtifactSettings& s) {
    return run.local_peak > s.min_severity * s.k || run.global_peak > s.min_global_severity * s.k ||
           (run.longest_silence_clip > 0 && run.longest_silence_clip >= s.min_silence_clip_run);
}

// Every run, in frame order.
std::vector<Run> runs_of(const std::vector<Flag>& flags, double k) {
    std::vector<Run> runs;
    std::size_t first = 0;
    for (std::size_t i = 1; i <= flags.size(); ++i) {
        if (i < flags.size() && flags[i].frame == flags[i - 1].frame + 1) continue;
        if (first < flags.size()) runs.push_back(judge(flags, first, i, k));
        first = i;
    }
    return runs;
}

void fill_events(const std::vector<Flag>& flags, const ReferenceArtifactSettings& s,
                 ReferenceArtifactChannel& out) {
    Run first;
    Run worst_counted;
    Run worst_minor;
    for (const Run& run : runs_of(flags, s.k)) {
        if (run.length < s.min_run) continue;
        if (out.event_count == 0) first = run;
        ++out.event_count;
        out.samples_flagged += run.length;
        Run& slot = counts(run, s) ? worst_counted : worst_minor;
        if (counts(run, s)) ++out.counted_event_count;
        if (slot.length == 0 || run.local_peak > slot.local_peak) slot = run;
    }
    out.minor_event_count = out.event_count - out.counted_event_count;
    out.first_event_start_frame = first.start;
    out.first_event_length = first.length;
    out.worst_event_counted = out.counted_event_count > 0;
    const Run& worst = out.worst_event_counted ? worst_counted : worst_minor;
    out.worst_event_start_frame = worst.start;
    out.worst_event_length = worst.length;
    out.worst_event_deviation_ratio = worst.local_peak;
    out.worst_event_severity = s.k > 0.0 ? worst.local_peak / s.k : 0.0;
    out.worst_event_global_severity = s.k > 0.0 ? worst.global_peak / s.k : 0.0;
    out.passed = out.counted_event_count == 0;
}

ReferenceArtifactChannel reference_channel(const WavFile& ref, const WavFile& dut,
                                           std::int64_t offset, std::size_t k,
                                           const ReferenceArtifactSettings& s) {
    ReferenceArtifactChannel out;
    const std::int64_t start = std::max<std::int64_t>(-offset, 0);
    const std::int64_t end = std::min(static_cast<std::int64_t>(dut.frames) - offset,
                                      static_cast<std::int64_t>(ref.frames));
    if (k >= dut.channels || end <= start) return out;
    std::vector<double> r;
    std::vector<double> d;
    for (std::int64_t n = start; n < end; ++n) {
        r.push_back(ref.samples[static_cast<std::size_t>(n) * ref.channels + k]);
        d.push_back(dut.samples[static_cast<std::size_t>(n + offset) * dut.channels + k]);
    }
    std::vector<double> e(r.size());
    for (std::size_t i = 0; i < e.size(); ++i)
        e[i] = d[i] - r[i];
    std::vector<double> sorted = e;
    const double centre = reference_median(sorted);
    for (std::size_t i = 0; i < sorted.size(); ++i)
        sorted[i] = std::fabs(e[i] - centre);
    const double global = std::max(reference_median(sorted), 1e-12);
    const double floor = std::pow(10.0, s.noise_floor_db / 20.0);
    const bool float_dut = dut.format == kWavFormatFloat32 || dut.format == kWavFormatFloat64;
    std::vector<Flag> flags;
    std::vector<double> scratch;
    for (std::size_t i = 0; i < e.size(); ++i) {
        if (std::fabs(r[i]) < floor && std::fabs(d[i]) < floor) {
            ++out.samples_excluded;
            continue;
        }
        const ReferenceNeighbourhood local =
            reference_neighbourhood(e, i, s.window_samples, scratch);
        const double a = std::fabs(e[i] - local.median);
        const double z_local = a / (1.4826 * std::max(local.mad, 1e-12));
        const bool sc = silence_or_clip(r[i], d[i], float_dut);
        if (!(z_local > s.k) && !sc) continue;
        flags.push_back(
            {static_cast<std::uint64_t>(start) + i, z_local, a / (1.4826 * global), sc});
    }
    out.samples_checked = e.size();
    fill_events(flags, s, out);
    return out;
}

} // namespace

ReferenceArtifactResult reference_artifact_check(const WavFile& ref, const WavFile& dut,
                                                 std::int64_t offset,
                                                 const ReferenceArtifactSettings& settings) {
    ReferenceArtifactResult result;
    result.channels = ref.channels;
    result.passed = true;
    for (std::size_t k = 0; k < std::min<std::size_t>(ref.channels, 2); ++k) {
        result.channel[k] = reference_channel(ref, dut, offset, k, settings);
        result.passed = result.passed && result.channel[k].passed;
    }
    return result;
}
