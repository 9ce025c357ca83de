#include "align/alignment_diagnosis.h"
#include "align/channel_copy.h"

#include <algorithm>
#include <cstdlib>
#include <span>

namespace {

// A stretch lines up at this correlation, whatever the confidence threshold.
constexpr double kStretchLinesUp = 0.5;

// What every channel's diagnosis shares.
struct DiagnosisPlan {
    std::size_t common = 0;  // n: frames both files have
    std::size_t stretch = 0; // q: length of the first and last stretch (0: files too short)
    std::size_t max_lag = 0;
    double threshold = 0.0;
};

DiagnosisPlan plan_diagnosis(const WavFile& ref, const WavFile& dut, std::size_t max_lag,
                             double threshold) {
    DiagnosisPlan plan{std::min(ref.frames, dut.frames), 0, max_lag, threshold};
    const std::size_t rate = ref.sample_rate; // the reference's rate (both files share it)
    if (plan.common / 4 >= rate / 4) plan.stretch = std::min(plan.common / 4, rate);
    return plan;
}

// Correlates the first and the last stretch and names the cause they point to, if any.
AlignmentCause search_stretches(std::span<const double> ref, std::span<const double> dut,
                                const DiagnosisPlan& plan, AlignmentDiagnosis& d) {
    const std::size_t q = plan.stretch;
    d.stretch_len = q;
    d.last_start = plan.common - q;
    const CorrelationPeak first = cross_correlate(ref.first(q), dut.first(q), plan.max_lag, false);
    const CorrelationPeak last = cross_correlate(ref.subspan(d.last_start, q),
                                                 dut.subspan(d.last_start, q), plan.max_lag, false);
    d.first_lag = first.lag;
    d.first_corr = first.corr;
    d.last_lag = last.lag;
    d.last_corr = last.corr;
    const bool first_ok = d.first_corr >= kStretchLinesUp;
    const bool last_ok = d.last_corr >= kStretchLinesUp;
    if (first_ok && last_ok)
        return d.first_lag == d.last_lag ? AlignmentCause::middle_differs : AlignmentCause::drift;
    if (first_ok) return AlignmentCause::only_first_stretch;
    if (last_ok) return AlignmentCause::only_last_stretch;
    return AlignmentCause::no_match;
}

// Searches half the common length for a confident match the alignment window could not reach.
AlignmentCause search_wide(std::span<const double> ref, std::span<const double> dut,
                           const DiagnosisPlan& plan, AlignmentDiagnosis& d) {
    const std::size_t bound = plan.common / 2;
    if (bound <= plan.max_lag) return AlignmentCause::no_match;
    const CorrelationPeak wide = cross_correlate(ref, dut, bound, false);
    d.wide_lag = wide.lag;
    d.wide_corr = wide.corr;
    const bool outside = static_cast<std::size_t>(std::abs(wide.lag)) > plan.max_lag;
    if (d.wide_corr >= plan.threshold && outside) return AlignmentCause::outside_search_window;
    return AlignmentCause::no_match;
}

AlignmentCause find_cause(std::span<const double> ref, std::span<const double> dut,
                          double whole_corr, const DiagnosisPlan& plan, AlignmentDiagnosis& d) {
    d.inverted_corr = cross_correlate(ref, dut, plan.max_lag, true).corr;
    const double flipped = -d.inverted_corr;
    if (flipped >= plan.threshold && flipped > whole_corr) return AlignmentCause::polarity_inverted;
    if (plan.stretch > 0) {
        const AlignmentCause cause = search_stretches(ref, dut, plan, d);
        if (cause != AlignmentCause::no_match) return cause;
    }
    return search_wide(ref, dut, plan, d);
}

} // namespace

ChannelDiagnoses diagnose_alignment(const WavFile& ref, const WavFile& dut,
                                    const AlignmentResult& alignment, std::size_t max_lag,
                                    double confidence_threshold) {
    ChannelDiagnoses diagnosis{};
    const DiagnosisPlan plan = plan_diagnosis(ref, dut, max_lag, confidence_threshold);
    const std::size_t count = std::min<std::uint64_t>(alignment.channels, 2);
    for (std::size_t k = 0; k < count; ++k) {
        const ChannelAlignment& channel = alignment.channel[k];
        if (channel.state != AlignmentState::measured || channel.ok) continue;
        AlignmentDiagnosis& d = diagnosis[k];
        d.examined = true;
        // A channel that cannot be copied (no memory, or a file without it) keeps cause 0.
        const MonoBuffer ref_k = copy_channel(ref, k);
        const MonoBuffer dut_k = copy_channel(dut, k);
        if (!ref_k || !dut_k) continue;
        d.cause = find_cause({ref_k.get(), ref.frames}, {dut_k.get(), dut.frames},
                             channel.confidence, plan, d);
    }
    return diagnosis;
}
