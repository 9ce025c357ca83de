#include "dsp/loudness_blocks.h"

#include "audio/audio.h"
#include "dsp/nothrow_array.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <utility>

namespace {

// Appends the loudness of every block of the group to the list, and each block's per-channel mean
// squares when the list keeps them; the squares held start at frame `base`. Per channel,
// z = (sum of squares) / (sample count); each block's power adds the channels' z in channel order.
void emit_group(const FrameSquares& held, std::size_t base, const BlockGroup& group,
                LoudnessBlockList& list) {
    std::array<SampleRange, kSquareSumLanes> ranges{};
    for (std::size_t g = 0; g < group.size; ++g)
        ranges[g] = {group.ranges[g].start - base, group.ranges[g].end - base};
    const std::size_t channels = held.channels;
    std::array<double, kSquareSumLanes * 2> sums{};
    sums_of_squares(held, std::span<const SampleRange>(ranges.data(), group.size), sums);
    for (std::size_t g = 0; g < group.size; ++g) {
        const auto count = static_cast<double>(ranges[g].end - ranges[g].start);
        double power = 0.0;
        for (std::size_t k = 0; k < channels; ++k) {
            const double z = sums[g * channels + k] / count;
            if (list.mean_squares) list.mean_squares[(list.count + g) * channels + k] = z;
            power += z;
        }
        list.loudness[list.count + g] = loudness_of_power(power);
    }
    list.count += group.size;
}

// A block is scanned when it holds at least one frame and ends within the signal.
bool block_kept(const SampleRange& block, std::size_t length) {
    return block.end <= length && block.end > block.start;
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
    return power > 0.0 ? -0.691 + power_db(power) : kSilenceDb;
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

LoudnessBlockScan loudness_block_scan(std::size_t channels, std::size_t length, double sample_rate,
                                      LoudnessBlockShape shape, bool keep_mean_squares) {
    LoudnessBlockScan scan;
    scan.sample_rate = sample_rate;
    scan.shape = shape;
    scan.length = length;
    scan.list.channels = channels;
    const std::size_t positions = loudness_block_count(length, sample_rate, shape);
    scan.allocated = positions == 0 || allocate_list(scan.list, positions, keep_mean_squares);
    if (positions > 0 && scan.allocated) scan.positions = positions;
    return scan;
}

void loudness_block_scan_feed(LoudnessBlockScan& scan, const FrameSquares& held, std::size_t base,
                              bool last) {
    const std::size_t arrived = base + held.frames;
    for (; scan.next < scan.positions; ++scan.next) {
        const SampleRange block = loudness_block_span(scan.next, scan.sample_rate, scan.shape);
        if (!block_kept(block, scan.length)) continue;
        if (block.end > arrived) break;
        scan.group.ranges[scan.group.size++] = block;
        if (scan.group.size < kSquareSumLanes) continue;
        emit_group(held, base, scan.group, scan.list);
        scan.group.size = 0;
    }
    if (last && scan.group.size > 0) {
        emit_group(held, base, scan.group, scan.list);
        scan.group.size = 0;
    }
}

std::size_t loudness_block_scan_needs(const LoudnessBlockScan& scan) {
    if (scan.group.size > 0) return scan.group.ranges[0].start;
    if (scan.next < scan.positions)
        return loudness_block_span(scan.next, scan.sample_rate, scan.shape).start;
    return SIZE_MAX;
}

LoudnessBlockList loudness_blocks(const FrameSquares& squares, double sample_rate,
                                  LoudnessBlockShape shape, bool keep_mean_squares) {
    LoudnessBlockScan scan = loudness_block_scan(squares.channels, squares.frames, sample_rate,
                                                 shape, keep_mean_squares);
    loudness_block_scan_feed(scan, squares, 0, true);
    return std::move(scan.list);
}

std::size_t loudness_kept_blocks(std::size_t length, double sample_rate, LoudnessBlockShape shape) {
    const std::size_t positions = loudness_block_count(length, sample_rate, shape);
    std::size_t kept = 0;
    for (std::size_t j = 0; j < positions; ++j)
        kept += block_kept(loudness_block_span(j, sample_rate, shape), length) ? 1 : 0;
    return kept;
}
