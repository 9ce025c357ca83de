#include "dsp/spectral_peaks.h"

#include <optional>

std::size_t spectral_find_peak(std::span<const double> ref_db, BinRange range) {
    std::size_t best = range.lo;
    for (std::size_t k = range.lo + 1; k <= range.hi; ++k) {
        if (ref_db[k] > ref_db[best]) best = k;
    }
    return best;
}

void spectral_mark_run_peaks(std::span<const double> ref_db, std::span<const SpectralBand> bands,
                             std::span<const std::uint8_t> band_of_bin,
                             std::span<std::uint8_t> peak) {
    std::optional<std::size_t> run_best; // highest bin of the open run, unset outside a run
    for (std::size_t k = 0; k < ref_db.size(); ++k) {
        // Each bin is held against the threshold of its own band, also inside a run that started
        // in another band.
        const double threshold = bands[band_of_bin[k]].peak_threshold_db;
        if (!run_best) {
            if (ref_db[k] > threshold) run_best = k;
            continue;
        }
        if (ref_db[k] < threshold) {
            peak[*run_best] = 1;
            run_best.reset();
            // This bin is below the threshold, so it cannot start the next run.
            continue;
        }
        if (ref_db[k] > ref_db[*run_best]) run_best = k;
    }
    if (run_best) peak[*run_best] = 1;
}
