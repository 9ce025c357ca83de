#include "dsp/block_sums.h"

#include "dsp/double_pair.h"

#include <algorithm>
#include <array>

namespace {

// Continues `sum` over frames from .. to - 1 of the squares starting at p.
template <class Lane> Lane add_frames(const double* p, std::size_t from, std::size_t to, Lane sum) {
    for (std::size_t i = from; i < to; ++i)
        sum += load_lane<Lane>(p + i * kLaneChannels<Lane>);
    return sum;
}

// Every range on its own.
template <class Lane>
void one_by_one(const FrameSquares& q, std::span<const SampleRange> ranges, double* sums) {
    for (std::size_t g = 0; g < ranges.size(); ++g) {
        const Lane sum = add_frames(q.data, ranges[g].start, ranges[g].end, Lane{});
        store_lane(sums + g * kLaneChannels<Lane>, sum);
    }
}

// Eight ranges: their common length side by side, then each remainder on its own.
template <class Lane>
void eight_side_by_side(const FrameSquares& q, std::span<const SampleRange> r, double* sums) {
    constexpr std::size_t c = kLaneChannels<Lane>;
    std::array<const double*, kSquareSumLanes> p{};
    std::size_t common = r[0].end - r[0].start;
    for (std::size_t g = 0; g < kSquareSumLanes; ++g) {
        p[g] = q.data + r[g].start * c;
        common = std::min(common, r[g].end - r[g].start);
    }
    std::array<Lane, kSquareSumLanes> s{};
    for (std::size_t i = 0; i < common; ++i) {
        const std::size_t at = i * c;
        s[0] += load_lane<Lane>(p[0] + at);
        s[1] += load_lane<Lane>(p[1] + at);
        s[2] += load_lane<Lane>(p[2] + at);
        s[3] += load_lane<Lane>(p[3] + at);
        s[4] += load_lane<Lane>(p[4] + at);
        s[5] += load_lane<Lane>(p[5] + at);
        s[6] += load_lane<Lane>(p[6] + at);
        s[7] += load_lane<Lane>(p[7] + at);
    }
    for (std::size_t g = 0; g < kSquareSumLanes; ++g) {
        const Lane sum = add_frames(p[g], common, r[g].end - r[g].start, s[g]);
        store_lane(sums + g * c, sum);
    }
}

template <class Lane>
void lane_sums(const FrameSquares& q, std::span<const SampleRange> ranges, double* sums) {
    if (ranges.size() == kSquareSumLanes) {
        eight_side_by_side<Lane>(q, ranges, sums);
    } else {
        one_by_one<Lane>(q, ranges, sums);
    }
}

} // namespace

void sums_of_squares(const FrameSquares& squares, std::span<const SampleRange> ranges,
                     std::span<double> sums) {
    if (squares.channels == 2) {
        lane_sums<DoublePair>(squares, ranges, sums.data());
    } else {
        lane_sums<double>(squares, ranges, sums.data());
    }
}
