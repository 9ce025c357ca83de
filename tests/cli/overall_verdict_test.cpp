#include "cli/capped_append.h"
#include "cli/overall_verdict.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Every check ran and passed; level fidelity and artifact detection gate as by default.
GatingInputs all_passing() {
    GatingInputs inputs{};
    for (CheckStatus& input : inputs)
        input = {true, false, true};
    inputs[static_cast<std::size_t>(GatingCheck::levelfidelity)].gates = true;
    inputs[static_cast<std::size_t>(GatingCheck::artifact)].gates = true;
    return inputs;
}

CheckStatus& input_of(GatingInputs& inputs, GatingCheck check) {
    return inputs[static_cast<std::size_t>(check)];
}

const CheckStatus& input_of_const(const GatingInputs& inputs, GatingCheck check) {
    return inputs[static_cast<std::size_t>(check)];
}

TEST(OverallVerdict, NothingFailedPasses) {
    const OverallVerdict overall = compute_overall_verdict(all_passing());
    EXPECT_TRUE(overall.passed);
    EXPECT_EQ(overall.gating_failure_count, 0u);
    EXPECT_EQ(overall.machine_list, "");
    EXPECT_EQ(overall.readable_list, "");
    for (const bool failed : overall.failed)
        EXPECT_FALSE(failed);
    EXPECT_EQ(overall_summary_line(overall), "overall: PASS");
}

TEST(OverallVerdict, BitExactnessFailingWithoutGatingPasses) {
    GatingInputs inputs = all_passing();
    input_of(inputs, GatingCheck::bitexact).passed = false;
    const OverallVerdict overall = compute_overall_verdict(inputs);
    EXPECT_TRUE(overall.passed);
    EXPECT_EQ(overall.gating_failure_count, 0u);
    EXPECT_FALSE(overall.failed[static_cast<std::size_t>(GatingCheck::bitexact)]);
    EXPECT_EQ(overall_summary_line(overall), "overall: PASS");
}

TEST(OverallVerdict, BitExactnessFailingWithGatingFails) {
    GatingInputs inputs = all_passing();
    input_of(inputs, GatingCheck::bitexact) = {true, true, false};
    const OverallVerdict overall = compute_overall_verdict(inputs);
    EXPECT_FALSE(overall.passed);
    EXPECT_EQ(overall.machine_list, "bitexact");
    EXPECT_EQ(overall_summary_line(overall), "overall: FAIL -- Bit-Exactness");
}

TEST(OverallVerdict, LevelFidelityAndSpectralFailing) {
    GatingInputs inputs = all_passing();
    input_of(inputs, GatingCheck::levelfidelity).passed = false;
    input_of(inputs, GatingCheck::spectral).passed = false;
    const OverallVerdict overall = compute_overall_verdict(inputs);
    EXPECT_FALSE(overall.passed);
    EXPECT_EQ(overall.gating_failure_count, 2u);
    EXPECT_EQ(overall.machine_list, "levelfidelity,spectral");
    EXPECT_EQ(overall.readable_list, "Level Fidelity, Spectral Fidelity");
    EXPECT_TRUE(overall.failed[static_cast<std::size_t>(GatingCheck::levelfidelity)]);
    EXPECT_TRUE(overall.failed[static_cast<std::size_t>(GatingCheck::spectral)]);
    EXPECT_FALSE(overall.failed[static_cast<std::size_t>(GatingCheck::artifact)]);
    EXPECT_EQ(overall_summary_line(overall), "overall: FAIL -- Level Fidelity, Spectral Fidelity");
}

TEST(OverallVerdict, NotRunChecksAreNeverListed) {
    GatingInputs inputs = all_passing();
    for (const GatingCheck check :
         {GatingCheck::bitexact, GatingCheck::distortion, GatingCheck::loudness,
          GatingCheck::time_domain, GatingCheck::impulse_template})
        input_of(inputs, check) = {false, true, false};
    const OverallVerdict overall = compute_overall_verdict(inputs);
    EXPECT_TRUE(overall.passed);
    EXPECT_EQ(overall.gating_failure_count, 0u);
    EXPECT_EQ(overall.machine_list, "");
}

TEST(OverallVerdict, ReferenceOnlySwitchesKeepFailuresOutOfTheVerdict) {
    GatingInputs inputs = all_passing();
    input_of(inputs, GatingCheck::levelfidelity) = {true, false, false};
    input_of(inputs, GatingCheck::artifact) = {true, false, false};
    input_of(inputs, GatingCheck::loudness) = {true, false, false};
    EXPECT_TRUE(compute_overall_verdict(inputs).passed);

    input_of(inputs, GatingCheck::loudness).gates = true;
    const OverallVerdict overall = compute_overall_verdict(inputs);
    EXPECT_FALSE(overall.passed);
    EXPECT_EQ(overall.machine_list, "loudness");
    EXPECT_EQ(overall.readable_list, "Loudness");
}

TEST(OverallVerdict, ChecksWithoutSwitchGateWhenTheyRanAndFailed) {
    GatingInputs inputs = all_passing();
    for (const GatingCheck check :
         {GatingCheck::length_mismatch, GatingCheck::spectral, GatingCheck::distortion,
          GatingCheck::time_domain, GatingCheck::impulse_template})
        input_of(inputs, check) = {true, false, false};
    const OverallVerdict overall = compute_overall_verdict(inputs);
    EXPECT_EQ(overall.gating_failure_count, 5u);
    EXPECT_EQ(overall.machine_list, "length_mismatch,spectral,distortion,time_domain,"
                                    "impulse_template");
}

TEST(OverallVerdict, EveryCheckFailingListsAllInTableOrder) {
    GatingInputs inputs{};
    for (CheckStatus& input : inputs)
        input = {true, true, false};
    const OverallVerdict overall = compute_overall_verdict(inputs);
    EXPECT_EQ(overall.gating_failure_count, 9u);
    EXPECT_EQ(overall.machine_list, "length_mismatch,bitexact,levelfidelity,artifact,spectral,"
                                    "distortion,loudness,time_domain,impulse_template");
    EXPECT_EQ(overall.readable_list,
              "Length Mismatch, Bit-Exactness, Level Fidelity, Artifact Detection, Spectral "
              "Fidelity, Distortion, Loudness, Time Domain, Impulse Template");
    for (const bool failed : overall.failed)
        EXPECT_TRUE(failed);
}

TEST(OverallVerdict, NamesFollowTheCheckOrder) {
    EXPECT_STREQ(gating_machine_name(GatingCheck::length_mismatch), "length_mismatch");
    EXPECT_STREQ(gating_readable_name(GatingCheck::artifact), "Artifact Detection");
    EXPECT_STREQ(gating_machine_name(GatingCheck::impulse_template), "impulse_template");
    EXPECT_STREQ(gating_readable_name(GatingCheck::time_domain), "Time Domain");
}

TEST(GatingInputs, LengthMismatchAlwaysRunsAndGates) {
    RunResults results;
    results.length_mismatch.failed = true;
    const GatingInputs inputs = gating_inputs(results);
    const CheckStatus& mismatch = input_of_const(inputs, GatingCheck::length_mismatch);
    EXPECT_TRUE(mismatch.ran);
    EXPECT_TRUE(mismatch.gates);
    EXPECT_FALSE(mismatch.passed);
    const OverallVerdict overall = compute_overall_verdict(inputs);
    EXPECT_EQ(overall.machine_list, "length_mismatch");
    EXPECT_EQ(overall_summary_line(overall), "overall: FAIL -- Length Mismatch");

    results.length_mismatch.failed = false;
    EXPECT_TRUE(input_of_const(gating_inputs(results), GatingCheck::length_mismatch).passed);
    EXPECT_TRUE(compute_overall_verdict(gating_inputs(results)).passed);
}

TEST(GatingInputs, SpectralFidelityGatesInEitherForm) {
    RunResults results;
    results.spectral.ran = true;
    results.spectral.result.scan.passed = false;
    EXPECT_EQ(compute_overall_verdict(gating_inputs(results)).machine_list, "spectral");

    results.spectral.result.snapshot_mode = true; // the snapshot form's verdict now decides
    EXPECT_TRUE(compute_overall_verdict(gating_inputs(results)).passed);
    results.spectral.result.snapshots.passed = false;
    const GatingInputs inputs = gating_inputs(results);
    const CheckStatus& spectral = input_of_const(inputs, GatingCheck::spectral);
    EXPECT_TRUE(spectral.ran);
    EXPECT_TRUE(spectral.gates);
    EXPECT_FALSE(spectral.passed);
}

TEST(AppendCapped, SeparatorOnlyBetweenNames) {
    std::string list;
    append_capped(list, ", ", "A", 50);
    append_capped(list, ", ", "B", 50);
    EXPECT_EQ(list, "A, B");
}

TEST(AppendCapped, StopsAtCapacityCuttingTheName) {
    std::string list(184, 'x');
    append_capped(list, ",", "spectral", kMaxMachineListLength);
    EXPECT_EQ(list, std::string(184, 'x') + ",spectr");
    EXPECT_EQ(list.size(), kMaxMachineListLength);
    append_capped(list, ",", "loudness", kMaxMachineListLength);
    EXPECT_EQ(list.size(), kMaxMachineListLength);
}

TEST(AppendCapped, SeparatorItselfCanBeCut) {
    std::string list(318, 'x');
    append_capped(list, ", ", "Loudness", kMaxReadableListLength);
    EXPECT_EQ(list, std::string(318, 'x') + ",");
}

TEST(OverallSummary, CutTo399Characters) {
    OverallVerdict overall;
    overall.passed = false;
    overall.readable_list = std::string(500, 'r');
    const std::string summary = overall_summary_line(overall);
    EXPECT_EQ(summary.size(), kMaxSummaryLength);
    EXPECT_EQ(summary, "overall: FAIL -- " + std::string(399 - 17, 'r'));
}

} // namespace
