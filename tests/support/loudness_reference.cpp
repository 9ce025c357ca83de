#include "support/loudness_reference.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace {

constexpr double kSilence = -200.0;

struct Section {
    double b0, b1, b2, a1, a2;
};

Section shelf(double rate) {
    const double k = std::tan(5284.078578647624 / rate);
    const double vh = 1.5848647011302448;
    const double vb = 1.258720930232585;
    const double q = 0.7071752369554193;
    const double a0 = 1.0 + k / q + k * k;
    return {(vh + vb * k / q + k * k) / a0, 2.0 * (k * k - vh) / a0, (vh - vb * k / q + k * k) / a0,
            2.0 * (k * k - 1.0) / a0, (1.0 - k / q + k * k) / a0};
}

Section high_pass(double rate) {
    const double k = std::tan(119.80611514566837 / rate);
    const double q = 0.5003270373253953;
    const double a0 = 1.0 + k / q + k * k;
    return {1.0, -2.0, 1.0, 2.0 * (k * k - 1.0) / a0, (1.0 - k / q + k * k) / a0};
}

std::array<double, 48> taps() {
    const double pi = std::numbers::pi;
    std::array<double, 48> h{};
    double sum = 0.0;
    for (std::size_t k = 0; k < 48; ++k) {
        const double x = static_cast<double>(k) - 23.5;
        const double window = 0.54 - 0.46 * std::cos(2.0 * pi * static_cast<double>(k) / 47.0);
        h[k] = std::sin(x * pi / 4.0) / (x * pi) * window;
        sum += h[k];
    }
    for (double& t : h)
        t *= 4.0 / sum;
    return h;
}

double loudness_of(double power) {
    return power > 0.0 ? -0.691 + 10.0 * std::log10(power) : kSilence;
}

double decibels(double magnitude) {
    return magnitude > 0.0 ? 20.0 * std::log10(magnitude) : kSilence;
}

// Integrated loudness: an inclusive absolute gate, then strict absolute and relative gates, the
// channels' mean squares averaged over the kept blocks channel by channel.
double gated_power(const ReferenceBlocks& b, std::size_t channels, double relative, bool first,
                   std::size_t& kept) {
    const auto keep = [&](double l) { return first ? l >= -70.0 : l > -70.0 && l > relative; };
    kept = 0;
    for (const double l : b.loudness)
        kept += keep(l) ? 1 : 0;
    double power = 0.0;
    for (std::size_t k = 0; k < channels; ++k) {
        double sum = 0.0;
        for (std::size_t i = 0; i < b.loudness.size(); ++i) {
            if (keep(b.loudness[i])) sum += b.mean_squares[i * channels + k];
        }
        if (kept > 0) power += sum / static_cast<double>(kept);
    }
    return power;
}

double integrated(const ReferenceBlocks& b, std::size_t channels) {
    std::size_t kept = 0;
    const double absolute = gated_power(b, channels, 0.0, true, kept);
    if (kept == 0) return kSilence;
    const double relative = absolute > 0.0 ? loudness_of(absolute) - 10.0 : kSilence;
    const double gated = gated_power(b, channels, relative, false, kept);
    return kept == 0 ? kSilence : loudness_of(gated);
}

double largest(const std::vector<double>& v) {
    return v.empty() ? kSilence : *std::max_element(v.begin(), v.end());
}

double quantile(const std::vector<double>& sorted, double p) {
    const double position = p * static_cast<double>(sorted.size() - 1);
    const double low = std::floor(position);
    const auto i = static_cast<std::size_t>(low);
    const auto j = static_cast<std::size_t>(std::ceil(position));
    if (i == j) return sorted[i];
    return sorted[i] + (position - low) * (sorted[j] - sorted[i]);
}

double range(const std::vector<double>& loudness) {
    std::vector<double> absolute;
    for (const double l : loudness) {
        if (l >= -70.0) absolute.push_back(l);
    }
    if (absolute.empty()) return 0.0;
    double sum = 0.0;
    for (const double l : absolute)
        sum += std::pow(10.0, l / 10.0);
    const double threshold = 10.0 * std::log10(sum / static_cast<double>(absolute.size())) - 20.0;
    std::vector<double> kept;
    for (const double l : absolute) {
        if (l >= threshold) kept.push_back(l);
    }
    if (kept.size() < 2) return 0.0;
    std::sort(kept.begin(), kept.end());
    return quantile(kept, 0.95) - quantile(kept, 0.1);
}

double sample_peak(const std::vector<double>& x) {
    double peak = 0.0;
    for (const double v : x)
        peak = std::max(peak, std::abs(v));
    return peak;
}

} // namespace

std::vector<double> reference_k_weighted(std::span<const double> x, double sample_rate) {
    const Section stages[2] = {shelf(sample_rate), high_pass(sample_rate)};
    std::vector<double> signal(x.begin(), x.end());
    for (const Section& f : stages) {
        double x1 = 0.0, x2 = 0.0, y1 = 0.0, y2 = 0.0;
        for (double& v : signal) {
            const double y = f.b0 * v + f.b1 * x1 + f.b2 * x2 - f.a1 * y1 - f.a2 * y2;
            x2 = x1;
            x1 = v;
            y2 = y1;
            y1 = y;
            v = y;
        }
    }
    return signal;
}

double reference_true_peak(std::span<const double> x) {
    const std::array<double, 48> h = taps();
    double peak = 0.0;
    for (std::size_t n = 0; n < x.size(); ++n) {
        for (std::size_t p = 0; p < 4; ++p) {
            double y = 0.0;
            for (std::size_t j = 0; j <= std::min<std::size_t>(n, 11); ++j)
                y += h[p + 4 * j] * x[n - j];
            peak = std::max(peak, std::abs(y));
        }
    }
    return peak;
}

ReferenceBlocks reference_blocks(const std::vector<std::vector<double>>& weighted,
                                 std::size_t length, double sample_rate, double block_seconds,
                                 double overlap) {
    ReferenceBlocks out;
    const double b = block_seconds;
    const double step = 1.0 - overlap;
    const double duration = static_cast<double>(length) / sample_rate;
    if (b > duration || step <= 0.0) return out;
    const double positions = std::round((duration - b) / (b * step)) + 1.0;
    for (std::size_t j = 0; static_cast<double>(j) < positions; ++j) {
        const auto index = static_cast<double>(j);
        const auto start = static_cast<std::size_t>(std::floor(b * index * step * sample_rate));
        const auto end =
            static_cast<std::size_t>(std::floor(b * (index * step + 1.0) * sample_rate));
        if (end > length || end <= start) continue;
        double power = 0.0;
        for (const std::vector<double>& channel : weighted) {
            double sum = 0.0;
            for (std::size_t i = start; i < end; ++i)
                sum += channel[i] * channel[i];
            const double z = sum / static_cast<double>(end - start);
            out.mean_squares.push_back(z);
            power += z;
        }
        out.loudness.push_back(loudness_of(power));
    }
    return out;
}

ReferenceLoudness reference_loudness(const WavFile& file, unsigned channels,
                                     std::size_t start_frame, std::size_t length,
                                     double sample_rate) {
    ReferenceLoudness out;
    const std::size_t used = std::min<std::size_t>({channels, file.channels, 2});
    const std::size_t frames = std::min(length, file.frames - std::min(start_frame, file.frames));
    if (frames == 0 || used == 0) return out;
    const auto padding = static_cast<std::size_t>(std::round(1.5 * sample_rate));
    std::vector<std::vector<double>> raw(used, std::vector<double>(frames));
    std::vector<std::vector<double>> weighted(used);
    for (std::size_t k = 0; k < used; ++k) {
        for (std::size_t i = 0; i < frames; ++i)
            raw[k][i] = file.samples[(start_frame + i) * file.channels + k];
        weighted[k] = reference_k_weighted(raw[k], sample_rate);
        weighted[k].resize(frames + padding, 0.0);
        out.sample_peak_dbfs = std::max(out.sample_peak_dbfs, decibels(sample_peak(raw[k])));
        out.true_peak_dbtp = std::max(out.true_peak_dbtp, decibels(reference_true_peak(raw[k])));
    }
    const ReferenceBlocks momentary = reference_blocks(weighted, frames, sample_rate, 0.4, 0.75);
    out.integrated_lufs = integrated(momentary, used);
    out.max_momentary_lufs = largest(momentary.loudness);
    out.max_short_term_lufs =
        largest(reference_blocks(weighted, frames, sample_rate, 3.0, 0.97).loudness);
    out.range_lu =
        range(reference_blocks(weighted, frames + padding, sample_rate, 3.0, 0.97).loudness);
    return out;
}
