#include "align/alignment.h"
#include "align/channel_correlation.h"
#include "audio/audio.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// What the correlation and the RMS found on one channel, before classification.
struct ChannelMeasurement {
    std::int64_t lag = 0;
    double corr = 0.0;
    bool ref_silent = false;
    bool dut_silent = false;
    bool out_of_memory = false;
    std::uint64_t failed_bytes = 0;
};

// sqrt(sum x^2 / frames). An empty channel has no level: its RMS is undefined (NaN), so it never
// counts as silent, and with its correlation of 0 it fails the confidence test.
double rms(const ChannelView& x) {
    if (x.size == 0) return std::numeric_limits<double>::quiet_NaN();
    double sum = 0.0;
    for (std::size_t i = 0; i < x.size; ++i) {
        const double v = view_at(x, i);
        sum += v * v;
    }
    return std::sqrt(sum / static_cast<double>(x.size));
}

// Correlates and measures channel k, read in place from both files. A file without channel k
// leaves the measurement zeroed (lag 0, correlation 0, not silent).
ChannelMeasurement measure_channel(const WavFile& ref, const WavFile& dut, std::size_t k,
                                   std::size_t max_lag, double silence_level) {
    ChannelMeasurement m;
    if (k >= ref.channels || k >= dut.channels) return m;
    const ChannelView ref_k = channel_view(ref, k);
    const ChannelView dut_k = channel_view(dut, k);
    const CorrelationPeak peak = correlate_channels(ref_k, dut_k, max_lag, false);
    m.lag = peak.lag;
    m.corr = peak.corr;
    m.out_of_memory = peak.out_of_memory;
    m.failed_bytes = peak.failed_bytes;
    m.ref_silent = silence_level >= rms(ref_k);
    m.dut_silent = silence_level >= rms(dut_k);
    return m;
}

bool silent_in_either(const ChannelMeasurement& m) {
    return m.ref_silent || m.dut_silent;
}

// Classifies channel k; a silent channel borrows from the other channel's raw measurement.
ChannelAlignment classify(const std::array<ChannelMeasurement, 2>& measured, std::size_t k,
                          std::uint64_t channels, double confidence_threshold) {
    const ChannelMeasurement& own = measured[k];
    ChannelAlignment out;
    out.ref_silent = own.ref_silent;
    out.dut_silent = own.dut_silent;
    if (!silent_in_either(own)) {
        out.state = AlignmentState::measured;
        out.offset = own.lag;
        out.confidence = own.corr;
        out.ok = own.corr >= confidence_threshold;
        return out;
    }
    out.ok = true;
    if (channels == 2) {
        const ChannelMeasurement& other = measured[1 - k];
        if (!silent_in_either(other) && other.corr >= confidence_threshold) {
            out.state = AlignmentState::silent_borrowed;
            out.offset = other.lag;
            out.confidence = other.corr;
            return out;
        }
    }
    out.state = AlignmentState::silent_zero;
    return out;
}

} // namespace

AlignmentResult align_channels(const WavFile& ref, const WavFile& dut, std::size_t max_lag,
                               std::int64_t tolerance, double confidence_threshold,
                               double silence_db) {
    AlignmentResult result;
    result.channels = ref.channels;
    if (ref.channels == 0) return result;
    const double silence_level = db_to_linear(silence_db);
    const std::size_t count = std::min<std::size_t>(ref.channels, 2);
    std::array<ChannelMeasurement, 2> measured{};
    for (std::size_t k = 0; k < count; ++k) {
        const ProgressPart part(k, count);
        measured[k] = measure_channel(ref, dut, k, max_lag, silence_level);
        if (measured[k].out_of_memory) {
            result.out_of_memory = true;
            result.failed_bytes = measured[k].failed_bytes;
            return result;
        }
    }
    for (std::size_t k = 0; k < count; ++k) {
        result.channel[k] = classify(measured, k, ref.channels, confidence_threshold);
    }
    const ChannelAlignment& first = result.channel[0];
    result.file_offset = first.offset;
    if (count == 1) {
        result.aligned = first.ok;
        return result;
    }
    const ChannelAlignment& second = result.channel[1];
    // Three or more channels take this two-channel rule, over the first two only.
    result.disagreement = std::abs(first.offset - second.offset);
    result.aligned = result.disagreement <= tolerance && first.ok && second.ok;
    return result;
}

const char* alignment_state_name(AlignmentState state) {
    switch (state) {
    case AlignmentState::silent_borrowed:
        return "silent_borrowed";
    case AlignmentState::silent_zero:
        return "silent_zero";
    default:
        return "measured";
    }
}
