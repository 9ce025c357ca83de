// The stretch of reference frames that a file offset lines up with the DUT: every comparison
// derives its range from here.
#pragma once

#include <cstddef>
#include <cstdint>

struct Overlap {
    std::size_t ref_start = 0; // first reference frame compared
    std::size_t length = 0;    // frames compared (0 when the files do not overlap)
};

// Reference frame n pairs with DUT frame n + offset: start = max(-offset, 0),
// end = min(dut_frames - offset, ref_frames), length = end - start when positive.
Overlap overlap_from_offset(std::int64_t offset, std::size_t ref_frames, std::size_t dut_frames);
