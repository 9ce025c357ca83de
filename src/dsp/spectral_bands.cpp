#include "dsp/spectral_bands.h"

namespace {

constexpr double kUnboundedUpperHz = 1e300;

} // namespace

std::vector<SpectralBand> spectral_band_table(std::span<const SpectralBand> configured,
                                              const SpectralBand& defaults) {
    if (!configured.empty()) return {configured.begin(), configured.end()};
    SpectralBand band = defaults;
    band.upper_freq_hz = kUnboundedUpperHz;
    return {band};
}

void spectral_band_map(std::span<const SpectralBand> bands, std::size_t bin_count,
                       double sample_rate, std::size_t n, std::vector<std::uint8_t>& out) {
    out.clear();
    if (bands.empty()) return;
    out.resize(bin_count);
    const std::size_t last = bands.size() - 1;
    std::size_t band = 0;
    for (std::size_t k = 0; k < bin_count; ++k) {
        const double freq = static_cast<double>(k) * sample_rate / static_cast<double>(n);
        // Bin frequencies only grow, so the band index only moves forward.
        while (band < last && bands[band].upper_freq_hz < freq)
            ++band;
        out[k] = static_cast<std::uint8_t>(band);
    }
}
