// One channel's sentence for each cause from hand-made records: the prefix, every number format
// (%+ld offsets, %.3f and %.1f seconds, %.2f and %.4f correlations, %.0f ppm), the rounding up
// of the suggested search setting and the early/late and later/earlier words.
#include "align/alignment_diagnosis.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string sentence(const AlignmentDiagnosis& d, const char* prefix = "",
                     std::uint32_t rate = 48000, std::size_t max_lag = 4800,
                     double whole_corr = 0.5, double threshold = 0.9) {
    BoundedText out = bounded_text(kAlignmentExplanationCapacity);
    explain_channel(out, prefix, d, rate, max_lag, whole_corr, threshold);
    return std::string(bounded_view(out));
}

AlignmentDiagnosis with_cause(AlignmentCause cause) {
    AlignmentDiagnosis d;
    d.examined = true;
    d.cause = cause;
    return d;
}

AlignmentDiagnosis wide(std::int64_t lag) {
    AlignmentDiagnosis d = with_cause(AlignmentCause::outside_search_window);
    d.wide_lag = lag;
    d.wide_corr = 0.97;
    return d;
}

std::string window_sentence(const std::string& seconds, const std::string& samples,
                            const std::string& direction, const std::string& window,
                            const std::string& suggestion) {
    return "the DUT matches the reference but " + seconds + " s (" + samples + " samples) " +
           direction + ", outside the +-" + window +
           " s search window. Set alignment.fine_align_max_search_sec to at least " + suggestion +
           " in sonalyx-defaults.cfg, or trim both files so they start together.";
}

TEST(DiagnosisSentence, PolarityWithPrefixAndFourDecimals) {
    AlignmentDiagnosis d = with_cause(AlignmentCause::polarity_inverted);
    d.inverted_corr = -0.98765;
    EXPECT_EQ(sentence(d, "left channel: "),
              "left channel: the DUT is polarity-inverted: it matches the reference with the "
              "sign flipped (correlation -0.9877), so no offset lines it up. Invert it and run "
              "again.");
}

TEST(DiagnosisSentence, WindowSuggestionRoundsUpToTheNextTenth) {
    // 14401 samples = 0.30002 s: 4.0002 rounds up to 5 tenths.
    EXPECT_EQ(sentence(wide(14401)), window_sentence("0.300", "14401", "late", "0.100", "0.5"));
    // 9600 samples = 0.2 s exactly: 3.0 stays 3 tenths.
    EXPECT_EQ(sentence(wide(9600)), window_sentence("0.200", "9600", "late", "0.100", "0.3"));
    // 12000 samples = 0.25 s: 3.5 rounds up to 4 tenths.
    EXPECT_EQ(sentence(wide(12000)), window_sentence("0.250", "12000", "late", "0.100", "0.4"));
}

TEST(DiagnosisSentence, WindowSaysEarlyForANegativeOrZeroLag) {
    EXPECT_EQ(sentence(wide(-9601)), window_sentence("0.200", "9601", "early", "0.100", "0.4"));
    EXPECT_EQ(sentence(wide(0)), window_sentence("0.000", "0", "early", "0.100", "0.1"));
    EXPECT_EQ(sentence(wide(1)), window_sentence("0.000", "1", "late", "0.100", "0.2"));
}

TEST(DiagnosisSentence, WindowUsesTheGivenRateAndSearch) {
    // 44100 Hz, max_lag 2205 = 0.05 s; 66150 samples = 1.5 s.
    EXPECT_EQ(sentence(wide(66150), "", 44100, 2205),
              window_sentence("1.500", "66150", "late", "0.050", "1.6"));
}

TEST(DiagnosisSentence, DriftLaterWithSignedOffsetsAndPpm) {
    AlignmentDiagnosis d = with_cause(AlignmentCause::drift);
    d.first_lag = 5;
    d.last_lag = 53;
    d.last_start = 2832000;
    EXPECT_EQ(sentence(d),
              "the start of the files lines up (offset +5 samples) but the end lines up 48 "
              "samples later (offset +53, 59.0 s further on). That fits samples skipped or "
              "repeated in between, or a clock-speed difference of about 17 ppm. One fixed "
              "offset cannot line up the whole file, so no comparison was made.");
}

TEST(DiagnosisSentence, DriftEarlierWithNegativeOffsets) {
    AlignmentDiagnosis d = with_cause(AlignmentCause::drift);
    d.first_lag = -20;
    d.last_lag = -320;
    d.last_start = 110400; // 2.3 s; 300 * 1e6 / 110400 = 2717.4 ppm
    EXPECT_EQ(sentence(d),
              "the start of the files lines up (offset -20 samples) but the end lines up 300 "
              "samples earlier (offset -320, 2.3 s further on). That fits samples skipped or "
              "repeated in between, or a clock-speed difference of about 2717 ppm. One fixed "
              "offset cannot line up the whole file, so no comparison was made.");
}

TEST(DiagnosisSentence, DriftOfZeroSaysEarlier) {
    AlignmentDiagnosis d = with_cause(AlignmentCause::drift);
    d.last_start = 48000;
    EXPECT_EQ(sentence(d),
              "the start of the files lines up (offset +0 samples) but the end lines up 0 "
              "samples earlier (offset +0, 1.0 s further on). That fits samples skipped or "
              "repeated in between, or a clock-speed difference of about 0 ppm. One fixed offset "
              "cannot line up the whole file, so no comparison was made.");
}

TEST(DiagnosisSentence, OnlyFirstStretchWithTenthsAndTwoDecimals) {
    AlignmentDiagnosis d = with_cause(AlignmentCause::only_first_stretch);
    d.stretch_len = 12345; // 0.2799 s at 44.1 kHz
    d.first_lag = 0;
    d.last_corr = 0.126;
    EXPECT_EQ(sentence(d, "", 44100),
              "the first 0.3 s lines up (offset +0 samples) but the last 0.3 s does not "
              "(correlation 0.13). Something changes partway through: for example a splice, a "
              "long dropout, a slip larger than the search window, or a different or truncated "
              "ending.");
}

TEST(DiagnosisSentence, OnlyLastStretch) {
    AlignmentDiagnosis d = with_cause(AlignmentCause::only_last_stretch);
    d.stretch_len = 48000;
    d.last_lag = -7;
    d.first_corr = -0.004;
    EXPECT_EQ(sentence(d, "right channel: "),
              "right channel: the last 1.0 s lines up (offset -7 samples) but the first 1.0 s "
              "does not (correlation -0.00). The beginning differs, or the content changes "
              "partway through.");
}

TEST(DiagnosisSentence, MiddleDiffersShowsWholeCorrelationAndThreshold) {
    AlignmentDiagnosis d = with_cause(AlignmentCause::middle_differs);
    d.stretch_len = 24000;
    d.first_lag = 3;
    d.last_lag = 3;
    EXPECT_EQ(sentence(d, "", 48000, 4800, 0.8449, 0.95),
              "the first and the last 0.5 s both line up (offset +3 samples) but the files as a "
              "whole do not (correlation 0.84, needs 0.95): a stretch in between differs, for "
              "example a splice, a long dropout or inserted audio.");
}

TEST(DiagnosisSentence, NoMatchShowsWholeCorrelationAndThreshold) {
    const AlignmentDiagnosis d = with_cause(AlignmentCause::no_match);
    EXPECT_EQ(sentence(d, "", 48000, 4800, 0.01234, 0.9),
              "no consistent match (correlation 0.0123, needs 0.9000) in the whole file, its "
              "first and last stretch, or a wider search. The files may not contain the same "
              "audio, or the DUT is too heavily changed to line up. Check that you gave the "
              "right pair.");
}

TEST(DiagnosisSentence, UnknownCauseReadsAsNoMatch) {
    const AlignmentDiagnosis d = with_cause(static_cast<AlignmentCause>(7));
    EXPECT_EQ(sentence(d, "", 48000, 4800, -0.25, 0.5),
              "no consistent match (correlation -0.2500, needs 0.5000) in the whole file, its "
              "first and last stretch, or a wider search. The files may not contain the same "
              "audio, or the DUT is too heavily changed to line up. Check that you gave the "
              "right pair.");
}

TEST(DiagnosisSentence, AppendsAfterExistingText) {
    BoundedText out = bounded_text(kAlignmentExplanationCapacity);
    bounded_append(out, "before. ");
    AlignmentDiagnosis d = with_cause(AlignmentCause::polarity_inverted);
    d.inverted_corr = -1.0;
    explain_channel(out, "", d, 48000, 4800, 0.0, 0.9);
    EXPECT_EQ(bounded_view(out),
              "before. the DUT is polarity-inverted: it matches the reference with the sign "
              "flipped (correlation -1.0000), so no offset lines it up. Invert it and run again.");
}

} // namespace
