// The per-sample tests of artifact detection on one aligned pair: reference sample r, DUT
// sample d, both normalised so that full scale is 1.0.
#pragma once

// Both samples strictly below the floor (a linear magnitude): the pair is left out of the check.
bool artifact_sample_excluded(double r, double d, double floor);

// A dropout (r is not 0 and d is exactly 0) or a clip the reference does not have: for an
// integer-PCM DUT |d| >= 0.999 while |r| < 0.999; for a float DUT |d| within 1e-9 of full scale
// while |r| is not.
bool artifact_silence_or_clip(double r, double d, bool float_dut);
