#include "dsp/k_weighting.h"

#include "dsp/double_pair.h"

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

// The past two inputs and outputs of one stage, for one channel (Lane double) or two side by side
// (Lane DoublePair).
template <class Lane> struct BiquadState {
    Lane x1{};
    Lane x2{};
    Lane y1{};
    Lane y2{};
};

// The filter form is not prescribed; the direct form I difference equation is used, its terms
// added in the order b0, b1, b2, a1, a2.
template <class Lane> Lane biquad_step(const Biquad& f, BiquadState<Lane>& s, Lane x) {
    const Lane y = f.b0 * x + f.b1 * s.x1 + f.b2 * s.x2 - f.a1 * s.y1 - f.a2 * s.y2;
    s.x2 = s.x1;
    s.x1 = x;
    s.y2 = s.y1;
    s.y1 = y;
    return y;
}

// The remembered values of one stage, starting at `at` in each channel's state.
template <class Lane> BiquadState<Lane> stage_state(const KWeightingState& k, std::size_t at);

template <> BiquadState<double> stage_state<double>(const KWeightingState& k, std::size_t at) {
    const auto& c = k.channel[0];
    return {c[at], c[at + 1], c[at + 2], c[at + 3]};
}

template <>
BiquadState<DoublePair> stage_state<DoublePair>(const KWeightingState& k, std::size_t at) {
    const auto& a = k.channel[0];
    const auto& b = k.channel[1];
    return {DoublePair{a[at], b[at]}, DoublePair{a[at + 1], b[at + 1]},
            DoublePair{a[at + 2], b[at + 2]}, DoublePair{a[at + 3], b[at + 3]}};
}

void keep_state(KWeightingState& k, std::size_t at, const BiquadState<double>& s) {
    k.channel[0][at] = s.x1;
    k.channel[0][at + 1] = s.x2;
    k.channel[0][at + 2] = s.y1;
    k.channel[0][at + 3] = s.y2;
}

void keep_state(KWeightingState& k, std::size_t at, const BiquadState<DoublePair>& s) {
    for (std::size_t c = 0; c < 2; ++c) {
        k.channel[c][at] = s.x1[c];
        k.channel[c][at + 1] = s.x2[c];
        k.channel[c][at + 2] = s.y1[c];
        k.channel[c][at + 3] = s.y2[c];
    }
}

// Each frame runs through both stages before the next one; every stage still sees exactly the
// sequence it would see if the stages ran one after the other over the whole signal. Two channels
// share one vector, each half computing what the one-channel filter computes.
template <class Lane>
void weigh_frames(const KWeighting& k, const InterleavedFrames& in, KWeightingState& state,
                  double* squares) {
    BiquadState<Lane> shelf = stage_state<Lane>(state, 0);
    BiquadState<Lane> high_pass = stage_state<Lane>(state, 4);
    for (std::size_t n = 0; n < in.frames; ++n) {
        const Lane x = load_lane<Lane>(in.first + n * in.stride);
        const Lane y = biquad_step(k.high_pass, high_pass, biquad_step(k.shelf, shelf, x));
        store_lane(squares + n * kLaneChannels<Lane>, y * y);
    }
    keep_state(state, 0, shelf);
    keep_state(state, 4, high_pass);
}

} // namespace

KWeighting k_weighting_design(double sample_rate) {
    return {design_shelf(sample_rate), design_high_pass(sample_rate)};
}

void k_weighting_squares(const KWeighting& k, const InterleavedFrames& in, KWeightingState& state,
                         double* squares) {
    if (in.channels == 2) {
        weigh_frames<DoublePair>(k, in, state, squares);
    } else {
        weigh_frames<double>(k, in, state, squares);
    }
}
