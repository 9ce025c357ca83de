#include "dsp/loudness_gating.h"

#include "audio/audio.h"

#include <algorithm>
#include <cstddef>

namespace {

constexpr double kAbsoluteGate = -70.0;
constexpr double kRelativeGateOffset = 10.0;

// Which blocks a gating pass keeps, given the relative threshold (unused by the first pass).
using BlockGate = bool (*)(double loudness, double relative);

// The first pass keeps a block exactly at the absolute gate.
bool absolute_pass(double loudness, double) {
    return loudness >= kAbsoluteGate;
}

// The second pass is strict against both thresholds.
bool relative_pass(double loudness, double relative) {
    return loudness > kAbsoluteGate && loudness > relative;
}

struct GatedPower {
    std::size_t blocks = 0; // blocks the pass kept
    double power = 0.0;     // sum over channels of the channel's mean square over those blocks
};

// Per channel, the mean over the kept blocks (summed in block order) of the channel's mean
// square; the channel means are summed in channel order.
GatedPower gated_power(const LoudnessBlockList& list, BlockGate gate, double relative) {
    GatedPower out;
    out.blocks = static_cast<std::size_t>(
        std::count_if(list.loudness.get(), list.loudness.get() + list.count,
                      [gate, relative](double loudness) { return gate(loudness, relative); }));
    if (out.blocks == 0) return out;
    for (std::size_t k = 0; k < list.channels; ++k) {
        double sum = 0.0;
        for (std::size_t i = 0; i < list.count; ++i) {
            if (gate(list.loudness[i], relative)) sum += list.mean_squares[i * list.channels + k];
        }
        out.power += sum / static_cast<double>(out.blocks);
    }
    return out;
}

} // namespace

double integrated_loudness(const LoudnessBlockList& momentary) {
    const GatedPower absolute = gated_power(momentary, absolute_pass, 0.0);
    if (absolute.blocks == 0) return kSilenceDb;
    const double relative =
        absolute.power > 0.0 ? loudness_of_power(absolute.power) - kRelativeGateOffset : kSilenceDb;
    const GatedPower gated = gated_power(momentary, relative_pass, relative);
    if (gated.blocks == 0) return kSilenceDb;
    return loudness_of_power(gated.power);
}

double max_block_loudness(const LoudnessBlockList& blocks, std::size_t count) {
    if (count == 0) return kSilenceDb;
    return *std::max_element(blocks.loudness.get(), blocks.loudness.get() + count);
}
