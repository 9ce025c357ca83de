// The K-weighting pre-filter of the loudness measure: a high-shelf stage followed by a high-pass
// stage, designed for any sample rate from the fixed filter parameters, and the filter itself.
#pragma once

#include <span>

// One second-order section, normalised so that the output coefficient a0 is 1.
struct Biquad {
    double b0 = 0.0;
    double b1 = 0.0;
    double b2 = 0.0;
    double a1 = 0.0;
    double a2 = 0.0;
};

struct KWeighting {
    Biquad shelf;     // the high-shelf stage, applied first
    Biquad high_pass; // the high-pass stage; its numerator is exactly 1, -2, 1
};

// Both stages for the sample rate `sample_rate` in Hz.
KWeighting k_weighting_design(double sample_rate);

// Filters `in` through the shelf and then the high-pass stage into `out` (same length or longer;
// only the first in.size() values are written), both stages starting from a zero state.
void k_weighting_filter(const KWeighting& k, std::span<const double> in, std::span<double> out);
