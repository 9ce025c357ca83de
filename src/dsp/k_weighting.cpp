#include "dsp/k_weighting.h"

#include <cmath>
#include <cstddef>

namespace {

// The filter parameters of the two stages, recast as tan() arguments so that one design serves
// every sample rate.
constexpr double kShelfAngle = 5284.078578647624;
constexpr double kShelfVh = 1.5848647011302448;
constexpr double kShelfVb = 1.258720930232585;
constexpr double kShelfQ = 0.7071752369554193;
constexpr double kHighPassAngle = 119.80611514566837;
constexpr double kHighPassQ = 0.5003270373253953;

Biquad design_shelf(double sample_rate) {
    const double k = std::tan(kShelfAngle / sample_rate);
    const double k2 = k * k;
    const double a0 = 1.0 + k / kShelfQ + k2;
    Biquad s;
    s.b0 = (kShelfVh + kShelfVb * k / kShelfQ + k2) / a0;
    s.b1 = 2.0 * (k2 - kShelfVh) / a0;
    s.b2 = (kShelfVh - kShelfVb * k / kShelfQ + k2) / a0;
    s.a1 = 2.0 * (k2 - 1.0) / a0;
    s.a2 = (1.0 - k / kShelfQ + k2) / a0;
    return s;
}

Biquad design_high_pass(double sample_rate) {
    const double k = std::tan(kHighPassAngle / sample_rate);
    const double k2 = k * k;
    const double a0 = 1.0 + k / kHighPassQ + k2;
    Biquad h;
    // The numerator stays 1, -2, 1: it is not divided by a0.
    h.b0 = 1.0;
    h.b1 = -2.0;
    h.b2 = 1.0;
    h.a1 = 2.0 * (k2 - 1.0) / a0;
    h.a2 = (1.0 - k / kHighPassQ + k2) / a0;
    return h;
}

// The past two inputs and outputs of one stage.
struct BiquadState {
    double x1 = 0.0;
    double x2 = 0.0;
    double y1 = 0.0;
    double y2 = 0.0;
};

// The filter form is not prescribed; the direct form I difference equation is used, its terms
// added in the order b0, b1, b2, a1, a2.
double biquad_step(const Biquad& f, BiquadState& s, double x) {
    const double y = f.b0 * x + f.b1 * s.x1 + f.b2 * s.x2 - f.a1 * s.y1 - f.a2 * s.y2;
    s.x2 = s.x1;
    s.x1 = x;
    s.y2 = s.y1;
    s.y1 = y;
    return y;
}

} // namespace

KWeighting k_weighting_design(double sample_rate) {
    return {design_shelf(sample_rate), design_high_pass(sample_rate)};
}

void k_weighting_filter(const KWeighting& k, std::span<const double> in, std::span<double> out) {
    BiquadState shelf;
    BiquadState high_pass;
    // Each sample runs through both stages before the next one; every stage still sees exactly
    // the sequence it would see if the stages ran one after the other over the whole signal.
    for (std::size_t i = 0; i < in.size(); ++i) {
        out[i] = biquad_step(k.high_pass, high_pass, biquad_step(k.shelf, shelf, in[i]));
    }
}
