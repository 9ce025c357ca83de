// The envelope reduction: a view of one channel split into 4096 equal columns, each keeping the
// smallest and largest value of the frames it covers.
#include "dsp/envelope.h"

#include "audio/audio.h"

#include <algorithm>
#include <cmath>

namespace {

// The file frames [start, end) one column reads.
struct ColumnFrames {
    std::int64_t start = 0;
    std::int64_t end = 0;
};

// Column i covers view frames first + trunc(i / 4096 * count) up to first + trunc((i + 1) / 4096
// * count), products in double precision, moved by `shift` and kept inside the file.
ColumnFrames column_frames(std::size_t i, std::int64_t first, std::size_t count, std::int64_t shift,
                           std::size_t frames) {
    const auto offset = [&](std::size_t edge) {
        return static_cast<std::int64_t>(static_cast<double>(edge) * 0.000244140625 *
                                         static_cast<double>(count));
    };
    const std::int64_t start = first + offset(i) + shift;
    const std::int64_t end = first + offset(i + 1) + shift;
    return {std::max<std::int64_t>(start, 0),
            std::min<std::int64_t>(end, static_cast<std::int64_t>(frames))};
}

// A level in dB floored at the envelope's floor.
double floored_db(double magnitude) {
    return std::max(magnitude_db(magnitude), kDisplayFloorDb);
}

// The smallest and largest of value(samples[index]) for index = first, first + stride, ... below
// last, compared in that order (so of two equal zeros the first one seen is kept).
template <typename Value>
void min_max(const double* samples, std::size_t first, std::size_t last, std::size_t stride,
             Value value, double& low, double& high) {
    low = value(samples[first]);
    high = low;
    for (std::size_t index = first + stride; index < last; index += stride) {
        const double v = value(samples[index]);
        low = std::min(low, v);
        high = std::max(high, v);
    }
}

// Fills column i from file frames [start, end). On the dB scale every sample counts by its level
// 20 log10 |x| (a sign has no level), so the column spans its quietest to its loudest sample; it
// keeps the smallest and largest magnitude and converts those two, which equals converting every
// sample first because the conversion and the floor never reverse an order.
void reduce_column(const WavFile& file, unsigned channel, ColumnFrames frames, EnvelopeScale scale,
                   Envelope& envelope, std::size_t i) {
    const std::size_t stride = file.channels;
    const std::size_t first = static_cast<std::size_t>(frames.start) * stride + channel;
    const std::size_t last = static_cast<std::size_t>(frames.end) * stride;
    double low = 0.0;
    double high = 0.0;
    if (scale == EnvelopeScale::db) {
        min_max(
            file.samples.data(), first, last, stride, [](double x) { return std::fabs(x); }, low,
            high);
        low = floored_db(low);
        high = floored_db(high);
    } else {
        min_max(
            file.samples.data(), first, last, stride, [](double x) { return x; }, low, high);
    }
    envelope.min[i] = low;
    envelope.max[i] = high;
    envelope.valid[i] = 1;
}

} // namespace

// Columns without a frame are invalid and hold the scale's resting value (0 amplitude, or the
// -140 dB floor); a channel the file does not have leaves every column invalid.
Envelope reduce_envelope(const WavFile& file, unsigned channel, std::int64_t first,
                         std::size_t count, std::int64_t shift, EnvelopeScale scale) {
    const double rest = scale == EnvelopeScale::db ? kDisplayFloorDb : 0.0;
    Envelope envelope{std::vector<double>(kEnvelopeColumns, rest),
                      std::vector<double>(kEnvelopeColumns, rest),
                      std::vector<std::uint8_t>(kEnvelopeColumns, 0)};
    if (channel >= file.channels) return envelope;
    for (std::size_t i = 0; i < kEnvelopeColumns; ++i) {
        const ColumnFrames frames = column_frames(i, first, count, shift, file.frames);
        if (frames.start < frames.end) {
            reduce_column(file, channel, frames, scale, envelope, i);
        }
    }
    return envelope;
}
