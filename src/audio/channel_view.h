// One channel of interleaved samples read in place, so that nothing needs a copy of it: element i
// lies at samples[i * stride].
#pragma once

#include "audio/wav_file.h"

#include <cstddef>
#include <span>

struct ChannelView {
    std::span<const double> samples; // element 0 to the last element, other channels between
    std::size_t size = 0;            // elements
    std::size_t stride = 1;          // doubles from one element to the next
};

inline double view_at(const ChannelView& view, std::size_t i) {
    return view.samples[i * view.stride];
}

// `count` elements `stride` apart from values[first] on (which must lie within `values`).
inline ChannelView strided_view(std::span<const double> values, std::size_t first,
                                std::size_t count, std::size_t stride) {
    if (count == 0) return {{}, 0, stride};
    return {values.subspan(first, (count - 1) * stride + 1), count, stride};
}

// Elements first ... first + count - 1 (which must lie within the view).
inline ChannelView view_slice(const ChannelView& view, std::size_t first, std::size_t count) {
    return strided_view(view.samples, first * view.stride, count, view.stride);
}

inline ChannelView view_of(std::span<const double> values) {
    return {values, values.size(), 1};
}

// Channel k of every frame; empty when the file has no channel k.
inline ChannelView channel_view(const WavFile& file, std::size_t k) {
    if (k >= file.channels) return {};
    return strided_view(file.samples, k, file.frames, file.channels);
}
