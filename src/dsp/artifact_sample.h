// The per-sample tests of artifact detection on one aligned pair: reference sample r, DUT
// sample d, both normalised so that full scale is 1.0. They run for every sample of the overlap,
// so they are defined here where the scan can inline them.
#pragma once

#include <cmath>

// An integer DUT cannot exceed full scale, so anything this close to it counts as clipped.
inline constexpr double kArtifactIntegerClipLevel = 0.999;
// A float DUT can exceed full scale; only values at full scale itself count as clipped.
inline constexpr double kArtifactFloatClipTolerance = 1e-9;

// Both samples strictly below the floor (a linear magnitude): the pair is left out of the check.
inline bool artifact_sample_excluded(double r, double d, double floor) {
    return std::fabs(r) < floor && std::fabs(d) < floor;
}

// A dropout (r is not 0 and d is exactly 0) or a clip the reference does not have: for an
// integer-PCM DUT |d| >= 0.999 while |r| < 0.999; for a float DUT |d| within 1e-9 of full scale
// while |r| is not.
inline bool artifact_silence_or_clip(double r, double d, bool float_dut) {
    if (r != 0.0 && d == 0.0) return true;
    if (float_dut) {
        return std::fabs(std::fabs(d) - 1.0) < kArtifactFloatClipTolerance &&
               std::fabs(std::fabs(r) - 1.0) >= kArtifactFloatClipTolerance;
    }
    return std::fabs(d) >= kArtifactIntegerClipLevel && std::fabs(r) < kArtifactIntegerClipLevel;
}
