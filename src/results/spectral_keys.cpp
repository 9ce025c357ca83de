#include "results/spectral_keys.h"

#include "results/prefixed_entries.h"
#include "results/results_blocks.h"
#include "results/run_results.h"

#include <cstddef>
#include <cstdio>
#include <string>

namespace {

// The worst-bin figures, written by both forms in the same order.
bool write_worst_bin(FlatJson& json, const std::string& p, const SpectralChannelResult& c) {
    return json_prefixed_real(json, p, "worst_bin_freq_hz", c.worst_freq_hz) &&
           json_prefixed_real(json, p, "worst_bin_ratio", c.worst_ratio) &&
           json_prefixed_real(json, p, "worst_bin_diff_db", c.worst_diff_db) &&
           json_prefixed_flag(json, p, "worst_bin_is_peak", c.worst_is_peak);
}

bool write_bin_counts(FlatJson& json, const std::string& p, const SpectralChannelResult& c) {
    return json_prefixed_count(json, p, "bins_compared", c.bins_compared) &&
           json_prefixed_count(json, p, "bins_excluded", c.bins_excluded) &&
           json_prefixed_count(json, p, "bins_failed", c.bins_failed);
}

bool write_percentiles(FlatJson& json, const std::string& p, const SpectralChannelResult& c) {
    return json_prefixed_real(json, p, "p50_ratio", c.p50_ratio) &&
           json_prefixed_real(json, p, "p95_ratio", c.p95_ratio) &&
           json_prefixed_real(json, p, "p99_ratio", c.p99_ratio);
}

bool write_scan_channel(FlatJson& json, std::size_t channel, const SpectralChannelResult& c) {
    const std::string p = channel_key("spectral", channel, "");
    return json_prefixed_flag(json, p, "frame_gated", c.frame_gated) &&
           json_prefixed_flag(json, p, "insufficient_samples", c.insufficient_samples) &&
           json_prefixed_count(json, p, "frames_scanned", c.frames_scanned) &&
           json_prefixed_count(json, p, "edge_skipped_samples", c.edge_skipped_samples) &&
           json_prefixed_count(json, p, "frames_gated", c.frames_gated) &&
           write_bin_counts(json, p, c) && write_percentiles(json, p, c) &&
           write_worst_bin(json, p, c);
}

bool write_snapshot(FlatJson& json, std::size_t channel, std::size_t index,
                    const SpectralSnapshot& snapshot) {
    char prefix[64];
    std::snprintf(prefix, sizeof prefix, "spectral_channel_%u_snapshot_%zu_",
                  static_cast<unsigned>(channel), index);
    const std::string p = prefix;
    const SpectralChannelResult& c = snapshot.channel[channel];
    const bool head = json_prefixed_real(json, p, "time_sec", snapshot.time_sec) &&
                      json_prefixed_text(json, p, "verdict", verdict_text(c.passed)) &&
                      json_prefixed_flag(json, p, "frame_gated", c.frame_gated) &&
                      write_bin_counts(json, p, c);
    // A snapshot that compared no bins (a gated one) has no ratio figures to report.
    return head &&
           (c.bins_compared == 0 || (write_percentiles(json, p, c) && write_worst_bin(json, p, c)));
}

bool write_snapshot_form(FlatJson& json, const SpectralSnapshotsResult& r) {
    if (!json_prefixed_flag(json, "spectral_", "insufficient_samples", r.insufficient_samples) ||
        !json_int(json, "spectral_snapshot_count", static_cast<int>(r.snapshots.size())))
        return false;
    const std::size_t channels = r.channels >= 2 ? 2 : 1;
    for (std::size_t channel = 0; channel < channels; ++channel) {
        for (std::size_t i = 0; i < r.snapshots.size(); ++i) {
            if (!write_snapshot(json, channel, i, r.snapshots[i])) return false;
        }
    }
    return true;
}

bool write_scan_form(FlatJson& json, const SpectralScanResult& r) {
    const std::size_t channels = r.channels >= 2 ? 2 : 1;
    for (std::size_t channel = 0; channel < channels; ++channel) {
        if (!write_scan_channel(json, channel, r.channel[channel])) return false;
    }
    return true;
}

} // namespace

bool write_spectral_keys(FlatJson& json, const SpectralOutcome& outcome) {
    if (!json_text(json, "spectral_verdict", verdict_text(spectral_passed(outcome)))) return false;
    return outcome.snapshot_mode ? write_snapshot_form(json, outcome.snapshots)
                                 : write_scan_form(json, outcome.scan);
}
