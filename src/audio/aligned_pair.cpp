#include "audio/aligned_pair.h"

AlignedPair aligned_pair(const WavFile& ref, const WavFile& dut, std::int64_t offset) {
    AlignedPair pair;
    pair.ref = &ref;
    pair.dut = &dut;
    pair.offset = offset;
    pair.overlap = overlap_from_offset(offset, ref.frames, dut.frames);
    // max(-offset, 0) + offset = max(offset, 0): never negative.
    pair.dut_start =
        static_cast<std::size_t>(static_cast<std::int64_t>(pair.overlap.ref_start) + offset);
    if (pair.overlap.length == 0) return pair;
    pair.ref_frames =
        std::span<const double>(ref.samples)
            .subspan(pair.overlap.ref_start * ref.channels, pair.overlap.length * ref.channels);
    pair.dut_frames =
        std::span<const double>(dut.samples)
            .subspan(pair.dut_start * dut.channels, pair.overlap.length * dut.channels);
    return pair;
}

AlignedChannel aligned_channel(const AlignedPair& pair, std::size_t c) {
    AlignedChannel channel;
    channel.ref_first = pair.overlap.ref_start;
    if (c >= pair.ref->channels || c >= pair.dut->channels) return channel;
    channel.ref = strided_view(pair.ref_frames, c, pair.overlap.length, pair.ref->channels);
    channel.dut = strided_view(pair.dut_frames, c, pair.overlap.length, pair.dut->channels);
    return channel;
}
