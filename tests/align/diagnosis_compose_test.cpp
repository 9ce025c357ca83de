// Composition of the whole paragraph from hand-made records: the mono form, the disagreement
// sentence, the joint no-match sentence, one sentence for both channels when their causes and
// telling figures agree, the per-channel form with its silent-partner sentences, and the cuts at
// the 1400- and 800-character buffers.
#include "diagnosis_fixture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

constexpr double kLeftConfidence = 0.31;
constexpr double kRightConfidence = 0.42;

ChannelAlignment failed_channel(double confidence, std::int64_t offset = 0) {
    ChannelAlignment channel;
    channel.ok = false;
    channel.offset = offset;
    channel.confidence = confidence;
    channel.state = AlignmentState::measured;
    return channel;
}

ChannelAlignment confident_channel(std::int64_t offset) {
    ChannelAlignment channel = failed_channel(0.99, offset);
    channel.ok = true;
    return channel;
}

ChannelAlignment silent_channel() {
    ChannelAlignment channel;
    channel.ok = true;
    channel.dut_silent = true;
    channel.state = AlignmentState::silent_zero;
    return channel;
}

AlignmentResult stereo(const ChannelAlignment& left, const ChannelAlignment& right) {
    AlignmentResult result;
    result.channels = 2;
    result.channel = {left, right};
    result.file_offset = left.offset;
    result.disagreement = std::abs(left.offset - right.offset);
    return result;
}

AlignmentResult both_failed() {
    return stereo(failed_channel(kLeftConfidence), failed_channel(kRightConfidence));
}

AlignmentDiagnosis diagnosed(AlignmentCause cause) {
    AlignmentDiagnosis d;
    d.examined = true;
    d.cause = cause;
    d.stretch_len = 48000;
    d.last_start = 144000;
    return d;
}

std::string explain(const AlignmentResult& alignment, const ChannelDiagnoses& diagnosis,
                    double threshold = kDiagThreshold) {
    return explain_alignment_failure(alignment, diagnosis, kDiagRate, kDiagMaxLag, kDiagTolerance,
                                     threshold);
}

std::string sentence(const AlignmentDiagnosis& d, const char* prefix, double whole_corr) {
    BoundedText out = bounded_text(kAlignmentExplanationCapacity);
    explain_channel(out, prefix, d, kDiagRate, kDiagMaxLag, whole_corr, kDiagThreshold);
    return std::string(bounded_view(out));
}

std::string shared_paragraph(const AlignmentDiagnosis& left) {
    return std::string(kDiagHead) + "both channels: " + sentence(left, "", kLeftConfidence);
}

std::string separate_paragraph(const AlignmentDiagnosis& left, const AlignmentDiagnosis& right) {
    return std::string(kDiagHead) + sentence(left, "left channel: ", kLeftConfidence) + " " +
           sentence(right, "right channel: ", kRightConfidence);
}

TEST(DiagnosisCompose, MonoFailureIsOneSentenceWithoutPrefix) {
    AlignmentResult alignment;
    alignment.channels = 1;
    alignment.channel[0] = failed_channel(0.45);
    AlignmentDiagnosis d = diagnosed(AlignmentCause::only_first_stretch);
    d.first_lag = -12;
    d.last_corr = 0.2;
    EXPECT_EQ(explain(alignment, {d, {}}),
              "alignment failed -- the first 1.0 s lines up (offset -12 samples) but the last "
              "1.0 s does not (correlation 0.20). Something changes partway through: for example "
              "a splice, a long dropout, a slip larger than the search window, or a different or "
              "truncated ending.");
}

TEST(DiagnosisCompose, MonoWithAnOkChannelGetsTheDisagreementSentence) {
    AlignmentResult alignment;
    alignment.channels = 1;
    alignment.channel[0] = confident_channel(5);
    EXPECT_EQ(explain(alignment, {}),
              "alignment failed -- the channels disagree by 0 samples (left lines up at +5, "
              "right at +0), more than the 2 allowed. If the DUT really delays one channel, "
              "raise alignment.fine_align_agreement_tolerance_samples in sonalyx-defaults.cfg; "
              "otherwise check the capture.");
}

TEST(DiagnosisCompose, StereoDisagreementWithSignedOffsets) {
    EXPECT_EQ(explain(stereo(confident_channel(-3), confident_channel(4)), {}),
              "alignment failed -- the channels disagree by 7 samples (left lines up at -3, "
              "right at +4), more than the 2 allowed. If the DUT really delays one channel, "
              "raise alignment.fine_align_agreement_tolerance_samples in sonalyx-defaults.cfg; "
              "otherwise check the capture.");
}

TEST(DiagnosisCompose, MoreThanTwoChannelsReadAsStereo) {
    AlignmentResult alignment = stereo(confident_channel(0), confident_channel(9));
    alignment.channels = 3;
    EXPECT_EQ(explain(alignment, {}).substr(0, 50),
              "alignment failed -- the channels disagree by 9 sam");
}

TEST(DiagnosisCompose, BothCausesZeroGiveTheJointSentence) {
    const ChannelDiagnoses diagnosis{diagnosed(AlignmentCause::no_match),
                                     diagnosed(AlignmentCause::no_match)};
    EXPECT_EQ(explain(both_failed(), diagnosis, 0.85),
              "alignment failed -- no consistent match (correlation 0.3100 on the left channel, "
              "0.4200 on the right, needs 0.8500) in the whole file, its first and last stretch, "
              "or a wider search. The files may not contain the same audio, or the DUT is too "
              "heavily changed to line up. Check that you gave the right pair.");
}

TEST(DiagnosisCompose, BothChannelsSentenceTakesTheLeftFigures) {
    AlignmentDiagnosis left = diagnosed(AlignmentCause::middle_differs);
    left.first_lag = 7;
    left.last_lag = 7;
    AlignmentDiagnosis right = left;
    right.last_lag = 9; // not a telling figure of this cause
    EXPECT_EQ(explain(both_failed(), {left, right}),
              "alignment failed -- both channels: the first and the last 1.0 s both line up "
              "(offset +7 samples) but the files as a whole do not (correlation 0.31, needs "
              "0.90): a stretch in between differs, for example a splice, a long dropout or "
              "inserted audio.");
}

// One hand-made pair per row: whether its causes and telling figures let one sentence speak for
// both channels.
struct PairRow {
    const char* name;
    AlignmentDiagnosis left;
    AlignmentDiagnosis right;
    bool shared;
};

PairRow polarity_row() {
    AlignmentDiagnosis left = diagnosed(AlignmentCause::polarity_inverted);
    left.inverted_corr = -0.95;
    AlignmentDiagnosis right = left;
    right.inverted_corr = -0.99;
    return {"polarity always shares", left, right, true};
}

std::vector<PairRow> window_rows() {
    AlignmentDiagnosis left = diagnosed(AlignmentCause::outside_search_window);
    left.wide_lag = 12000;
    left.wide_corr = 0.95;
    AlignmentDiagnosis right = left;
    right.wide_corr = 0.99;
    AlignmentDiagnosis other_lag = left;
    other_lag.wide_lag = 12001;
    return {{"window same lag", left, right, true}, {"window other lag", left, other_lag, false}};
}

std::vector<PairRow> drift_rows() {
    AlignmentDiagnosis left = diagnosed(AlignmentCause::drift);
    left.first_lag = 0;
    left.last_lag = 48;
    left.last_start = 2832000;
    AlignmentDiagnosis right = left;
    right.first_corr = 0.7;
    AlignmentDiagnosis other_first = left;
    other_first.first_lag = 1;
    AlignmentDiagnosis other_last = left;
    other_last.last_lag = 47;
    return {{"drift same lags", left, right, true},
            {"drift other first lag", left, other_first, false},
            {"drift other last lag", left, other_last, false}};
}

std::vector<PairRow> first_lag_rows(AlignmentCause cause, const char* same_name,
                                    const char* other_name) {
    AlignmentDiagnosis left = diagnosed(cause);
    left.first_lag = 10;
    left.last_lag = 10;
    left.last_corr = 0.1;
    AlignmentDiagnosis right = left;
    right.last_corr = 0.2;
    right.last_lag = 30;
    AlignmentDiagnosis other = left;
    other.first_lag = 11;
    return {{same_name, left, right, true}, {other_name, left, other, false}};
}

std::vector<PairRow> last_lag_rows() {
    AlignmentDiagnosis left = diagnosed(AlignmentCause::only_last_stretch);
    left.last_lag = -3;
    left.first_corr = 0.1;
    AlignmentDiagnosis right = left;
    right.first_corr = 0.3;
    right.first_lag = 44;
    AlignmentDiagnosis other = left;
    other.last_lag = -4;
    return {{"last stretch same lag", left, right, true},
            {"last stretch other lag", left, other, false}};
}

std::vector<PairRow> mixed_rows() {
    AlignmentDiagnosis polarity = diagnosed(AlignmentCause::polarity_inverted);
    polarity.inverted_corr = -0.97;
    AlignmentDiagnosis window = diagnosed(AlignmentCause::outside_search_window);
    window.wide_lag = -20000;
    const AlignmentDiagnosis unknown = diagnosed(static_cast<AlignmentCause>(9));
    return {{"polarity and window", polarity, window, false},
            {"no match and polarity", diagnosed(AlignmentCause::no_match), polarity, false},
            {"equal unknown causes", unknown, unknown, false}};
}

std::vector<PairRow> all_rows() {
    std::vector<PairRow> rows{polarity_row()};
    for (std::vector<PairRow> part :
         {window_rows(), drift_rows(),
          first_lag_rows(AlignmentCause::only_first_stretch, "first stretch same lag",
                         "first stretch other lag"),
          first_lag_rows(AlignmentCause::middle_differs, "middle same lag", "middle other lag"),
          last_lag_rows(), mixed_rows()})
        rows.insert(rows.end(), part.begin(), part.end());
    return rows;
}

TEST(DiagnosisCompose, BothChannelsRuleFollowsEachCausesTellingFigures) {
    for (const PairRow& row : all_rows()) {
        SCOPED_TRACE(row.name);
        const std::string expected =
            row.shared ? shared_paragraph(row.left) : separate_paragraph(row.left, row.right);
        EXPECT_EQ(explain(both_failed(), {row.left, row.right}), expected);
    }
}

TEST(DiagnosisCompose, OnlyTheFailedRightChannelIsExplained) {
    AlignmentDiagnosis right = diagnosed(AlignmentCause::polarity_inverted);
    right.inverted_corr = -0.93;
    EXPECT_EQ(explain(stereo(confident_channel(0), failed_channel(0.1)),
                      ChannelDiagnoses{AlignmentDiagnosis{}, right}),
              "alignment failed -- right channel: the DUT is polarity-inverted: it matches the "
              "reference with the sign flipped (correlation -0.9300), so no offset lines it up. "
              "Invert it and run again.");
}

TEST(DiagnosisCompose, OnlyTheFailedLeftChannelIsExplained) {
    AlignmentDiagnosis left = diagnosed(AlignmentCause::polarity_inverted);
    left.inverted_corr = -0.93;
    EXPECT_EQ(explain(stereo(failed_channel(0.1), confident_channel(0)),
                      ChannelDiagnoses{left, AlignmentDiagnosis{}}),
              "alignment failed -- left channel: the DUT is polarity-inverted: it matches the "
              "reference with the sign flipped (correlation -0.9300), so no offset lines it up. "
              "Invert it and run again.");
}

TEST(DiagnosisCompose, SilentPartnersAreNamedAfterTheSentence) {
    const ChannelDiagnoses diagnosis{diagnosed(AlignmentCause::no_match),
                                     diagnosed(AlignmentCause::no_match)};
    const std::string no_match = "no consistent match (correlation 0.2000, needs 0.9000)";
    EXPECT_EQ(explain(stereo(failed_channel(0.2), silent_channel()), diagnosis),
              std::string(kDiagHead) + "left channel: " + no_match + kNoMatchTail + kRightSilent);
    EXPECT_EQ(explain(stereo(silent_channel(), failed_channel(0.2)), diagnosis),
              std::string(kDiagHead) + "right channel: " + no_match + kNoMatchTail + kLeftSilent);
}

// Correlations far outside [-1, 1] make the numbers long enough to reach the buffer limits.
constexpr double kHuge = 1e300;

std::string middle_sentence(const char* prefix, double whole_corr, double threshold) {
    return std::string(prefix) +
           "the first and the last 1.0 s both line up (offset +7 samples) but the files as a "
           "whole do not (correlation " +
           diag_format("%.2f", whole_corr) + ", needs " + diag_format("%.2f", threshold) +
           "): a stretch in between differs, for example a splice, a long dropout or inserted "
           "audio.";
}

AlignmentDiagnosis middle_at_seven() {
    AlignmentDiagnosis d = diagnosed(AlignmentCause::middle_differs);
    d.first_lag = 7;
    d.last_lag = 7;
    return d;
}

TEST(DiagnosisCompose, SharedSentenceIsCutAt799Characters) {
    const AlignmentDiagnosis d = middle_at_seven();
    const AlignmentResult alignment = stereo(failed_channel(-kHuge), failed_channel(0.1));
    const std::string full = middle_sentence("", -kHuge, kHuge);
    ASSERT_GT(full.size(), 799U);
    EXPECT_EQ(explain(alignment, {d, d}, kHuge),
              std::string(kDiagHead) + "both channels: " + full.substr(0, 799));
}

TEST(DiagnosisCompose, ParagraphIsCutAt1399Characters) {
    const AlignmentDiagnosis right = middle_at_seven();
    const AlignmentResult alignment = stereo(failed_channel(-kHuge), failed_channel(-kHuge));
    const std::string full = std::string(kDiagHead) + "left channel: no consistent match " +
                             "(correlation " + diag_format("%.4f", -kHuge) + ", needs " +
                             diag_format("%.4f", kHuge) + ")" + kNoMatchTail + " " +
                             middle_sentence("right channel: ", -kHuge, kHuge);
    ASSERT_GT(full.size(), 1399U);
    const std::string text =
        explain(alignment, {diagnosed(AlignmentCause::no_match), right}, kHuge);
    EXPECT_EQ(text.size(), 1399U);
    EXPECT_EQ(text, full.substr(0, 1399));
}

} // namespace
