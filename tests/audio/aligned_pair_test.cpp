// Two files lined up under a frame offset: the overlap found once, the overlapping frames and the
// per-channel views of them.
#include "audio/aligned_pair.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

// `frames` frames of `channels` channels; frame f, channel c holds base + 10 * f + c.
WavFile numbered(std::uint32_t channels, std::size_t frames, double base) {
    WavFile file;
    file.sample_rate = 48000;
    file.channels = channels;
    file.frames = frames;
    for (std::size_t f = 0; f < frames; ++f)
        for (std::uint32_t c = 0; c < channels; ++c)
            file.samples.push_back(base + 10.0 * static_cast<double>(f) + c);
    return file;
}

// Every element of both views of channel c against the files read by frame index.
void expect_channel_pairs(const AlignedPair& pair, std::size_t c) {
    const AlignedChannel channel = aligned_channel(pair, c);
    ASSERT_EQ(channel.ref.size, pair.overlap.length);
    ASSERT_EQ(channel.dut.size, pair.overlap.length);
    EXPECT_EQ(channel.ref_first, pair.overlap.ref_start);
    for (std::size_t i = 0; i < channel.ref.size; ++i) {
        const std::size_t n = pair.overlap.ref_start + i;
        const auto m = static_cast<std::size_t>(static_cast<std::int64_t>(n) + pair.offset);
        EXPECT_EQ(view_at(channel.ref, i), pair.ref->samples[n * pair.ref->channels + c]);
        EXPECT_EQ(view_at(channel.dut, i), pair.dut->samples[m * pair.dut->channels + c]);
    }
}

TEST(AlignedPair, LateDutPairsReferenceFrameNWithDutFrameNPlusOffset) {
    const WavFile ref = numbered(2, 10, 0.0);
    const WavFile dut = numbered(2, 12, 1000.0);
    const AlignedPair pair = aligned_pair(ref, dut, 3);
    EXPECT_EQ(pair.overlap.ref_start, 0u);
    EXPECT_EQ(pair.overlap.length, 9u);
    EXPECT_EQ(pair.dut_start, 3u);
    ASSERT_EQ(pair.ref_frames.size(), 18u);
    ASSERT_EQ(pair.dut_frames.size(), 18u);
    EXPECT_EQ(pair.ref_frames.front(), 0.0);
    EXPECT_EQ(pair.dut_frames.front(), 1030.0);
    EXPECT_EQ(pair.dut_frames.back(), 1111.0);
    expect_channel_pairs(pair, 0);
    expect_channel_pairs(pair, 1);
}

TEST(AlignedPair, EarlyDutSkipsTheReferenceHead) {
    const WavFile ref = numbered(1, 10, 0.0);
    const WavFile dut = numbered(1, 10, 500.0);
    const AlignedPair pair = aligned_pair(ref, dut, -4);
    EXPECT_EQ(pair.overlap.ref_start, 4u);
    EXPECT_EQ(pair.overlap.length, 6u);
    EXPECT_EQ(pair.dut_start, 0u);
    EXPECT_EQ(pair.ref_frames.front(), 40.0);
    EXPECT_EQ(pair.dut_frames.front(), 500.0);
    expect_channel_pairs(pair, 0);
}

TEST(AlignedPair, NoOverlapLeavesEverythingEmpty) {
    const WavFile ref = numbered(2, 5, 0.0);
    const WavFile dut = numbered(2, 5, 0.0);
    for (const std::int64_t offset : {-5, 5, -100, 100}) {
        const AlignedPair pair = aligned_pair(ref, dut, offset);
        EXPECT_EQ(pair.overlap.length, 0u) << offset;
        EXPECT_TRUE(pair.ref_frames.empty()) << offset;
        EXPECT_TRUE(pair.dut_frames.empty()) << offset;
        EXPECT_EQ(aligned_channel(pair, 0).ref.size, 0u) << offset;
        EXPECT_EQ(aligned_channel(pair, 1).dut.size, 0u) << offset;
    }
}

TEST(AlignedPair, EmptyFilesHaveNoOverlap) {
    const WavFile empty = numbered(1, 0, 0.0);
    const WavFile some = numbered(1, 4, 0.0);
    EXPECT_EQ(aligned_pair(empty, some, 0).overlap.length, 0u);
    EXPECT_EQ(aligned_pair(some, empty, 0).overlap.length, 0u);
    EXPECT_EQ(aligned_channel(aligned_pair(empty, empty, 0), 0).ref.size, 0u);
}

TEST(AlignedPair, AChannelEitherFileLacksIsEmpty) {
    const WavFile stereo = numbered(2, 6, 0.0);
    const WavFile mono = numbered(1, 6, 0.0);
    const AlignedPair pair = aligned_pair(stereo, mono, 1);
    EXPECT_EQ(pair.overlap.length, 5u);
    expect_channel_pairs(pair, 0);
    const AlignedChannel right = aligned_channel(pair, 1);
    EXPECT_EQ(right.ref.size, 0u);
    EXPECT_EQ(right.dut.size, 0u);
    EXPECT_EQ(aligned_channel(aligned_pair(mono, stereo, 0), 1).ref.size, 0u);
}

TEST(ChannelView, SlicesAndStridesReadTheElementsInPlace) {
    const WavFile file = numbered(3, 4, 0.0);
    const ChannelView middle = channel_view(file, 1);
    ASSERT_EQ(middle.size, 4u);
    EXPECT_EQ(view_at(middle, 3), 31.0);
    const ChannelView slice = view_slice(middle, 1, 2);
    ASSERT_EQ(slice.size, 2u);
    EXPECT_EQ(view_at(slice, 0), 11.0);
    EXPECT_EQ(view_at(slice, 1), 21.0);
    EXPECT_EQ(view_slice(middle, 4, 0).size, 0u);
    EXPECT_EQ(channel_view(file, 3).size, 0u);
}

} // namespace
