#include "audio/overlap.h"

#include <algorithm>

Overlap overlap_from_offset(std::int64_t offset, std::size_t ref_frames, std::size_t dut_frames) {
    const std::int64_t start = std::max<std::int64_t>(-offset, 0);
    const std::int64_t end = std::min(static_cast<std::int64_t>(dut_frames) - offset,
                                      static_cast<std::int64_t>(ref_frames));
    if (end <= start) return {static_cast<std::size_t>(start), 0};
    return {static_cast<std::size_t>(start), static_cast<std::size_t>(end - start)};
}
