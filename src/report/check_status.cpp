#include "report/check_status.h"

#include <algorithm>

namespace {

template <typename Result> CheckStatus status_of(const CheckBlock<Result>& block, bool gates) {
    return {block.ran, gates, !block.ran || block.result.passed};
}

std::size_t examined(std::uint32_t channels) {
    return std::min<std::size_t>(channels, 2);
}

} // namespace

bool check_failed(const CheckStatus& status) {
    return status.ran && !status.passed;
}

bool check_failed_nongating(const CheckStatus& status) {
    return check_failed(status) && !status.gates;
}

Badge status_badge(const CheckStatus& status) {
    return check_badge(status.ran, status.gates, status.passed);
}

CheckStatus bit_exact_status(const RunResults& results) {
    return status_of(results.bit_exact, results.config.bit_exact.gates_overall.value);
}

CheckStatus bit_accuracy_status(const RunResults& results) {
    return status_of(results.bit_accuracy, false);
}

CheckStatus level_status(const RunResults& results) {
    return status_of(results.level_fidelity, results.config.level_fidelity.gates_overall.value);
}

CheckStatus artifact_status(const RunResults& results) {
    return status_of(results.artifact, results.config.artifact.gates_overall.value);
}

CheckStatus spectral_status(const RunResults& results) {
    const bool ran = results.spectral.ran;
    return {ran, true, !ran || spectral_passed(results.spectral.result)};
}

CheckStatus distortion_status(const RunResults& results) {
    return status_of(results.distortion, true);
}

CheckStatus loudness_status(const RunResults& results) {
    return status_of(results.loudness, results.config.loudness.gates_overall.value);
}

CheckStatus time_domain_status(const RunResults& results) {
    return status_of(results.time_domain, true);
}

CheckStatus impulse_template_status(const RunResults& results) {
    return status_of(results.impulse_template, true);
}

bool spectral_scan_in_error(const SpectralScanResult& scan) {
    const std::size_t channels = examined(scan.channels);
    for (std::size_t c = 0; c < channels; ++c)
        if (scan.channel[c].insufficient_samples) return true;
    return false;
}

double spectral_scan_p99(const SpectralScanResult& scan) {
    double worst = 0.0;
    const std::size_t channels = examined(scan.channels);
    for (std::size_t c = 0; c < channels; ++c)
        worst = std::max(worst, scan.channel[c].p99_ratio);
    return worst;
}

std::size_t distortion_shown_channel(const DistortionResult& result) {
    std::size_t shown = 0;
    const std::size_t channels = examined(result.channels);
    for (std::size_t c = 1; c < channels; ++c) {
        const DistortionChannelResult& candidate = result.channel[c];
        const DistortionChannelResult& current = result.channel[shown];
        if (!distortion_has_measurement(candidate)) continue;
        if (!distortion_has_measurement(current) || candidate.thdn_ratio > current.thdn_ratio)
            shown = c;
    }
    return shown;
}

bool distortion_has_measurement(const DistortionChannelResult& channel) {
    return !channel.insufficient_samples && !channel.frame_gated && channel.frames_scanned > 0;
}
