#include "dsp/loudness_blocks.h"

#include "audio/decibels.h"
#include "audio/rounding.h"
#include "dsp/nothrow_array.h"

#include <array>
#include <cmath>

namespace {

// Blocks whose loudness is computed together: up to kSquareSumLanes sample ranges.
struct BlockGroup {
    std::array<SampleRange, kSquareSumLanes> ranges{};
    std::size_t size = 0;
};

// Appends the loudness of every block of the group to the list, and each block's per-channel mean
// squares when the list keeps them. Per channel, z = (sum of squares) / (sample count); each
// block's power adds the channels' z in channel order.
void emit_group(std::span<const std::span<const double>> channels, const BlockGroup& group,
                LoudnessBlockList& list) {
    const std::span<const SampleRange> ranges(group.ranges.data(), group.size);
    std::array<double, kSquareSumLanes> power{};
    std::array<double, kSquareSumLanes> sums{};
    for (std::size_t k = 0; k < channels.size(); ++k) {
        sums_of_squares(channels[k].data(), ranges, sums);
        for (std::size_t g = 0; g < group.size; ++g) {
            const double z = sums[g] / static_cast<double>(ranges[g].end - ranges[g].start);
            if (list.mean_squares) list.mean_squares[(list.count + g) * list.channels + k] = z;
            power[g] += z;
        }
    }
    for (std::size_t g = 0; g < group.size; ++g) {
        list.loudness[list.count++] = loudness_of_power(power[g]);
    }
}

// Allocates room for `positions` blocks; false (with nothing allocated) when that fails.
bool allocate_list(LoudnessBlockList& list, std::size_t positions, bool keep_mean_squares) {
    list.loudness = try_allocate_doubles(positions);
    if (keep_mean_squares) list.mean_squares = try_allocate_doubles(positions * list.channels);
    if (list.loudness && (!keep_mean_squares || list.mean_squares)) return true;
    list.loudness.reset();
    list.mean_squares.reset();
    return false;
}

} // namespace

double loudness_of_power(double power) {
    return power > 0.0 ? -0.691 + 10.0 * std::log10(power) : kSilenceDb;
}

std::size_t loudness_block_count(std::size_t length, double sample_rate, LoudnessBlockShape shape) {
    const double b = shape.block_seconds;
    const double duration = static_cast<double>(length) / sample_rate;
    if (b > duration || 1.0 - shape.overlap <= 0.0) return 0;
    const double steps = round_half_away_from_zero((duration - b) / (b * (1.0 - shape.overlap)));
    return static_cast<std::size_t>(steps) + 1;
}

SampleRange loudness_block_span(std::size_t j, double sample_rate, LoudnessBlockShape shape) {
    const double b = shape.block_seconds;
    const double step = 1.0 - shape.overlap;
    const auto index = static_cast<double>(j);
    const double start = std::floor(b * index * step * sample_rate);
    const double end = std::floor(b * (index * step + 1.0) * sample_rate);
    return {static_cast<std::size_t>(start), static_cast<std::size_t>(end)};
}

LoudnessBlockList loudness_blocks(std::span<const std::span<const double>> channels,
                                  std::size_t length, double sample_rate, LoudnessBlockShape shape,
                                  bool keep_mean_squares) {
    LoudnessBlockList list;
    list.channels = channels.size();
    const std::size_t positions = loudness_block_count(length, sample_rate, shape);
    if (positions == 0 || !allocate_list(list, positions, keep_mean_squares)) return list;
    BlockGroup group;
    for (std::size_t j = 0; j < positions; ++j) {
        const SampleRange block = loudness_block_span(j, sample_rate, shape);
        if (block.end > length || block.end <= block.start) continue;
        group.ranges[group.size++] = block;
        if (group.size < kSquareSumLanes) continue;
        emit_group(channels, group, list);
        group.size = 0;
    }
    if (group.size > 0) emit_group(channels, group, list);
    return list;
}
