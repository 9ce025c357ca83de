// One channel of a decoded file read in place from the interleaved samples, so the correlations
// need no copy of it: element i lies at data[i * stride].
#pragma once

#include "audio/wav_file.h"

#include <cstddef>
#include <span>

struct ChannelView {
    const double* data = nullptr;
    std::size_t size = 0;   // elements (frames of the file)
    std::size_t stride = 1; // doubles from one element to the next (the file's channel count)
};

inline double view_at(const ChannelView& view, std::size_t i) {
    return view.data[i * view.stride];
}

// Elements first ... first + count - 1 (which must lie within the view).
inline ChannelView view_slice(const ChannelView& view, std::size_t first, std::size_t count) {
    return {view.data + first * view.stride, count, view.stride};
}

inline ChannelView view_of(std::span<const double> values) {
    return {values.data(), values.size(), 1};
}

// Channel k of every frame; empty when the file has no channel k.
inline ChannelView channel_view(const WavFile& file, std::size_t k) {
    if (k >= file.channels) return {};
    return {file.samples.data() + k, file.frames, file.channels};
}
