// Explaining a failed alignment in one paragraph: further correlation searches on each channel
// that failed (sign flipped, first and last stretch, a much wider lag range) classify the failure
// into one of seven causes, and fixed sentences compose the explanation.
#pragma once

#include "align/alignment.h"
#include "align/bounded_text.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

enum class AlignmentCause : std::uint32_t {
    no_match = 0,
    polarity_inverted = 1,
    outside_search_window = 2,
    drift = 3, // start and end line up at different offsets
    only_first_stretch = 4,
    only_last_stretch = 5,
    middle_differs = 6, // first and last stretch line up at the same offset, the whole does not
};

struct AlignmentDiagnosis {
    bool examined = false;
    AlignmentCause cause = AlignmentCause::no_match;
    double inverted_corr = 0.0;
    std::int64_t wide_lag = 0;
    double wide_corr = 0.0;
    std::uint64_t stretch_len = 0;
    std::uint64_t last_start = 0;
    double first_corr = 0.0;
    double last_corr = 0.0;
    std::int64_t first_lag = 0;
    std::int64_t last_lag = 0;
    // One of the searches could not get its memory: the searches stopped there, the cause is
    // no_match and means nothing, and the run must stop rather than explain the failure.
    bool out_of_memory = false;
    std::uint64_t failed_bytes = 0; // the size of the allocation that failed
};

using ChannelDiagnoses = std::array<AlignmentDiagnosis, 2>;

// Examines every channel among the first two that was measured but not confident, with the
// same max_lag and threshold the alignment used; the other channels stay unexamined and zeroed.
ChannelDiagnoses diagnose_alignment(const WavFile& ref, const WavFile& dut,
                                    const AlignmentResult& alignment, std::size_t max_lag,
                                    double confidence_threshold);

inline constexpr std::size_t kAlignmentExplanationCapacity = 1400;
// The buffer one channel's sentence is composed in when it stands for both channels.
inline constexpr std::size_t kBothChannelsSentenceCapacity = 800;

// Appends one channel's sentence for its cause, `prefix` first. `whole_corr` is the channel's
// whole-file confidence from the alignment.
void explain_channel(BoundedText& out, const char* prefix, const AlignmentDiagnosis& diagnosis,
                     std::uint32_t sample_rate, std::size_t max_lag, double whole_corr,
                     double confidence_threshold);

// The paragraph beginning "alignment failed -- ", at most 1399 characters (cut silently).
std::string explain_alignment_failure(const AlignmentResult& alignment,
                                      const ChannelDiagnoses& diagnosis, std::uint32_t sample_rate,
                                      std::size_t max_lag, std::int64_t tolerance,
                                      double confidence_threshold);
