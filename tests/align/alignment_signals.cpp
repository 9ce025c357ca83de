#include "alignment_signals.h"

#include "support/signal_gen.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr std::size_t kNoteFrames = 6000;

// One note: four slightly inharmonic partials under an attack-decay envelope.
void add_note(std::vector<double>& out, std::size_t start, SignalRng& rng) {
    const double f0 = signal_next_uniform(rng, 110.0, 880.0);
    const double partials[][2] = {{1.0, 1.0}, {2.01, 0.5}, {3.03, 0.3}, {4.1, 0.2}};
    const double step = 2.0 * std::numbers::pi / kTestRate;
    const std::size_t end = std::min(out.size(), start + kNoteFrames);
    for (std::size_t n = start; n < end; ++n) {
        const double t = static_cast<double>(n - start);
        const double envelope = std::min(1.0, t / 200.0) * std::exp(-t / 2500.0);
        double tone = 0.0;
        for (const auto& partial : partials) {
            tone += partial[1] * std::sin(step * f0 * partial[0] * t);
        }
        out[n] += 0.25 * envelope * tone;
    }
}

std::vector<double> music(std::uint64_t seed, std::size_t frames) {
    SignalRng rng = signal_rng(seed);
    std::vector<double> out(frames, 0.0);
    for (std::size_t start = 0; start < frames; start += kNoteFrames) {
        add_note(out, start, rng);
    }
    for (double& x : out) {
        x += signal_next_uniform(rng, -0.002, 0.002);
    }
    return out;
}

// Short decaying noise bursts 500 to 4000 frames apart, exact silence in between.
std::vector<double> transients(std::uint64_t seed, std::size_t frames) {
    SignalRng rng = signal_rng(seed);
    std::vector<double> out(frames, 0.0);
    std::size_t at = static_cast<std::size_t>(signal_next_int(rng, 0, 2000));
    while (at < frames) {
        for (std::size_t i = 0; i < 96 && at + i < frames; ++i) {
            const double decay = std::exp(-static_cast<double>(i) / 20.0);
            out[at + i] = 0.8 * decay * signal_next_uniform(rng, -1.0, 1.0);
        }
        at += static_cast<std::size_t>(signal_next_int(rng, 500, 4000));
    }
    return out;
}

} // namespace

std::string material_name(Material material) {
    switch (material) {
    case Material::noise:
        return "noise";
    case Material::music:
        return "music";
    default:
        return "transients";
    }
}

std::vector<double> make_material(Material material, std::uint64_t seed, std::size_t frames) {
    switch (material) {
    case Material::noise:
        return signal_uniform(seed, frames, -0.5, 0.5);
    case Material::music:
        return music(seed, frames);
    default:
        return transients(seed, frames);
    }
}

DelayedPair delayed_pair(Material material, std::uint64_t seed, std::size_t frames,
                         std::int64_t delay) {
    const std::vector<double> source = make_material(material, seed, frames + 2 * kMaxTestDelay);
    const auto ref_start = source.begin() + kMaxTestDelay;
    const auto dut_start = ref_start - delay;
    const auto length = static_cast<std::ptrdiff_t>(frames);
    return {std::vector<double>(ref_start, ref_start + length),
            std::vector<double>(dut_start, dut_start + length)};
}

std::vector<double> delayed_with_zeros(std::span<const double> x, std::int64_t delay) {
    std::vector<double> out(x.size(), 0.0);
    const auto size = static_cast<std::int64_t>(x.size());
    for (std::int64_t n = 0; n < size; ++n) {
        const std::int64_t from = n - delay;
        if (from >= 0 && from < size) out[static_cast<std::size_t>(n)] = x[from];
    }
    return out;
}

std::vector<double> negated(std::span<const double> x) {
    std::vector<double> out(x.size());
    std::transform(x.begin(), x.end(), out.begin(), [](double v) { return -v; });
    return out;
}

WavFile make_wav(const std::vector<std::vector<double>>& channels) {
    WavFile file;
    file.sample_rate = kTestRate;
    file.channels = static_cast<std::uint32_t>(channels.size());
    file.format = kWavFormatFloat64;
    file.samples = signal_interleave(channels);
    file.frames = channels.empty() ? 0 : channels[0].size();
    return file;
}

CorrelationPeak direct_correlate(std::span<const double> a, std::span<const double> b,
                                 std::size_t max_lag, bool invert) {
    const auto n_a = static_cast<std::int64_t>(a.size());
    const auto n_b = static_cast<std::int64_t>(b.size());
    const auto reach = static_cast<std::int64_t>(max_lag);
    const std::int64_t lo = std::max(-reach, 1 - n_b);
    const std::int64_t hi = std::min(reach, n_a - 1);
    const double sign = invert ? -1.0 : 1.0;
    double best = -1e300;
    CorrelationPeak peak{-lo, 0.0};
    for (std::int64_t l = lo; l <= hi; ++l) {
        double c = 0.0;
        double energy_a = 0.0;
        double energy_b = 0.0;
        for (std::int64_t n = std::max<std::int64_t>(0, l); n < std::min(n_a, n_b + l); ++n) {
            c += a[n] * b[n - l];
            energy_a += a[n] * a[n];
            energy_b += b[n - l] * b[n - l];
        }
        if (sign * c > best) {
            best = sign * c;
            const double product = energy_a * energy_b;
            peak = {-l, product > 0.0 ? c / std::sqrt(product) : 0.0};
        }
    }
    return peak;
}
