#include "results/check_gating.h"

#include <gtest/gtest.h>

#include <cstddef>

namespace {

// Sets every check's record from the bits of `pattern`: ran, passed and, for the checks with a
// switch, the gating switch.
void fill_from_pattern(unsigned pattern, RunResults& r) {
    auto bit = [&pattern]() {
        const bool value = (pattern & 1u) != 0;
        pattern >>= 1;
        return value;
    };
    r.length_mismatch.failed = bit();
    r.bit_exact = {bit(), {}};
    r.bit_exact.result.passed = bit();
    r.config.bit_exact.gates_overall.value = bit();
    r.level_fidelity.ran = bit();
    r.level_fidelity.result.passed = bit();
    r.config.level_fidelity.gates_overall.value = bit();
    r.artifact.ran = bit();
    r.artifact.result.passed = bit();
    r.config.artifact.gates_overall.value = bit();
    r.spectral.ran = bit();
    r.spectral.result.scan.passed = bit();
    r.distortion.ran = bit();
    r.distortion.result.passed = bit();
    r.loudness.ran = bit();
    r.loudness.result.passed = bit();
    r.config.loudness.gates_overall.value = bit();
    r.time_domain.ran = bit();
    r.time_domain.result.passed = bit();
    r.impulse_template.ran = bit();
    r.impulse_template.result.passed = bit();
}

} // namespace

TEST(CheckGating, SwitchesDecideOnlyForTheirFourChecks) {
    for (std::size_t index = 0; index < kGatingCheckCount; ++index) {
        const auto check = static_cast<GatingCheck>(index);
        const bool has_switch = check == GatingCheck::bitexact ||
                                check == GatingCheck::levelfidelity ||
                                check == GatingCheck::artifact || check == GatingCheck::loudness;
        EXPECT_EQ(always_gates(check), !has_switch) << index;
    }
}

TEST(CheckGating, AFailureEitherGatesOrIsMarkedNonGatingNeverBoth) {
    // Many combinations of records: every failed check is exactly one of "fails the overall
    // verdict" and "failed without gating", the two things the verdict and the page show.
    for (unsigned pattern = 0; pattern < (1u << 21); pattern += 4099) {
        RunResults r;
        fill_from_pattern(pattern, r);
        const GatingInputs inputs = gating_inputs(r);
        for (std::size_t index = 0; index < kGatingCheckCount; ++index) {
            const auto check = static_cast<GatingCheck>(index);
            const CheckStatus& s = inputs[index];
            EXPECT_EQ(s.ran, check_status(r, check).ran);
            EXPECT_EQ(check_failed(s), check_fails_overall(check, s) != check_failed_nongating(s))
                << pattern << " " << index;
        }
    }
}

TEST(CheckGating, SwitchedOffChecksFailWithoutGating) {
    RunResults r;
    r.level_fidelity = {true, {}};
    r.level_fidelity.result.passed = false;
    r.config.level_fidelity.gates_overall.value = false;
    const CheckStatus level = check_status(r, GatingCheck::levelfidelity);
    EXPECT_TRUE(check_failed_nongating(level));
    EXPECT_FALSE(check_fails_overall(GatingCheck::levelfidelity, level));
    r.config.level_fidelity.gates_overall.value = true;
    EXPECT_TRUE(check_fails_overall(GatingCheck::levelfidelity,
                                    check_status(r, GatingCheck::levelfidelity)));
}

TEST(CheckGating, ChecksWithoutSwitchGateWhateverTheRecordSays) {
    RunResults r;
    r.distortion = {true, {}};
    r.distortion.result.passed = false;
    const CheckStatus distortion = check_status(r, GatingCheck::distortion);
    EXPECT_TRUE(distortion.gates);
    EXPECT_TRUE(check_fails_overall(GatingCheck::distortion, distortion));
    EXPECT_FALSE(check_failed_nongating(distortion));
    EXPECT_TRUE(check_status(r, GatingCheck::length_mismatch).ran);
    EXPECT_TRUE(check_status(r, GatingCheck::length_mismatch).gates);
}

TEST(CheckGating, BitAccuracyNeverGates) {
    RunResults r;
    r.bit_accuracy = {true, {}};
    r.bit_accuracy.result.passed = false;
    const CheckStatus accuracy = bit_accuracy_status(r);
    EXPECT_TRUE(accuracy.ran);
    EXPECT_FALSE(accuracy.gates);
    EXPECT_TRUE(check_failed_nongating(accuracy));
}
