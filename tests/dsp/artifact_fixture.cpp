#include "dsp/artifact_fixture.h"

#include "support/memory_wav.h"
#include "support/neighbourhood_reference.h"
#include "support/signal_gen.h"

#include <algorithm>
#include <cmath>

namespace {

// |e[i] - neighbourhood median|.
double centred_magnitude(const std::vector<double>& e, std::size_t i, std::size_t window) {
    std::vector<double> scratch;
    return std::fabs(e[i] - reference_neighbourhood(e, i, window, scratch).median);
}

} // namespace

ArtifactResult run_artifact(const WavFile& ref, const WavFile& dut, const ArtifactSettings& s) {
    return artifact_check(aligned_pair(ref, dut, s.offset), s.k, s.floor_db, s.window, s.min_run,
                          s.min_severity, s.min_global_severity, s.min_silence_clip_run);
}

WavFile artifact_wav(const std::vector<std::vector<double>>& channels, std::uint32_t format) {
    WavFile file = memory_wav(channels, 48000);
    file.format = format;
    return file;
}

std::vector<double> artifact_program(std::uint64_t seed, std::size_t frames) {
    SignalRng rng = signal_rng(seed);
    std::vector<double> out(frames);
    for (double& v : out) {
        const double magnitude = static_cast<double>(signal_next_int(rng, 100, 600)) / 1024.0;
        v = signal_next_int(rng, 0, 1) == 0 ? magnitude : -magnitude;
    }
    return out;
}

std::vector<double> artifact_noisy_copy(const std::vector<double>& ref, std::uint64_t seed) {
    SignalRng rng = signal_rng(seed);
    std::vector<double> out(ref.size());
    for (std::size_t i = 0; i < ref.size(); ++i)
        out[i] = ref[i] + static_cast<double>(signal_next_int(rng, -40, 40)) / 8192.0;
    return out;
}

std::vector<double> artifact_differences(const std::vector<double>& ref,
                                         const std::vector<double>& dut) {
    std::vector<double> e(ref.size());
    for (std::size_t i = 0; i < ref.size(); ++i)
        e[i] = dut[i] - ref[i];
    return e;
}

double artifact_local_deviation(const std::vector<double>& e, std::size_t i, std::size_t window) {
    std::vector<double> scratch;
    const double mad = reference_neighbourhood(e, i, window, scratch).mad;
    return centred_magnitude(e, i, window) / (1.4826 * std::max(mad, 1e-12));
}

double artifact_global_deviation(const std::vector<double>& e, std::size_t i, std::size_t window) {
    std::vector<double> sorted = e;
    const double centre = reference_median(sorted);
    std::vector<double> deviations(e.size());
    for (std::size_t j = 0; j < e.size(); ++j)
        deviations[j] = std::fabs(e[j] - centre);
    const double mad = std::max(reference_median(deviations), 1e-12);
    return centred_magnitude(e, i, window) / (1.4826 * mad);
}
