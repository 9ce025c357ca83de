// The two files of a comparison lined up under the alignment's file offset: the overlap is found
// once here, and every check reads the paired samples through it.
#pragma once

#include "audio/channel_view.h"
#include "audio/overlap.h"
#include "audio/wav_file.h"

#include <cstddef>
#include <cstdint>
#include <span>

// Reference frame n pairs with DUT frame n + offset. Both files must outlive the pair.
struct AlignedPair {
    const WavFile* ref = nullptr;
    const WavFile* dut = nullptr;
    std::int64_t offset = 0;
    Overlap overlap;                    // the reference frames that have a DUT partner
    std::size_t dut_start = 0;          // the DUT frame paired with overlap.ref_start
    std::span<const double> ref_frames; // the overlap's reference frames, every channel
    std::span<const double> dut_frames; // the DUT frames paired with them, every channel
};

AlignedPair aligned_pair(const WavFile& ref, const WavFile& dut, std::int64_t offset);

// One channel of the overlap in both files: element i of `ref` is reference frame ref_first + i,
// element i of `dut` its DUT partner.
struct AlignedChannel {
    ChannelView ref;
    ChannelView dut;
    std::size_t ref_first = 0;
};

// Channel c of the pair; both views are empty when either file lacks channel c.
AlignedChannel aligned_channel(const AlignedPair& pair, std::size_t c);
