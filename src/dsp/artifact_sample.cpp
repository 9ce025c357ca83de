#include "dsp/artifact_sample.h"

#include <cmath>

namespace {

// An integer DUT cannot exceed full scale, so anything this close to it counts as clipped.
constexpr double kIntegerClipLevel = 0.999;
// A float DUT can exceed full scale; only values at full scale itself count as clipped.
constexpr double kFloatClipTolerance = 1e-9;

bool integer_clip(double r, double d) {
    return std::fabs(d) >= kIntegerClipLevel && std::fabs(r) < kIntegerClipLevel;
}

bool float_clip(double r, double d) {
    return std::fabs(std::fabs(d) - 1.0) < kFloatClipTolerance &&
           std::fabs(std::fabs(r) - 1.0) >= kFloatClipTolerance;
}

} // namespace

bool artifact_sample_excluded(double r, double d, double floor) {
    return std::fabs(r) < floor && std::fabs(d) < floor;
}

bool artifact_silence_or_clip(double r, double d, bool float_dut) {
    if (r != 0.0 && d == 0.0) return true;
    return float_dut ? float_clip(r, d) : integer_clip(r, d);
}
