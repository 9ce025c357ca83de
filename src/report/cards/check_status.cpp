#include "report/cards/check_status.h"

#include <algorithm>

namespace {

std::size_t examined(std::uint32_t channels) {
    return std::min<std::size_t>(channels, 2);
}

} // namespace

Badge status_badge(const CheckStatus& status) {
    return check_badge(status.ran, status.gates, status.passed);
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
