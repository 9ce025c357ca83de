// The check's selection-based statistics against the plain three-sort measurement: on the same
// random pairs both must give the same record, field for field and bit for bit.
#include "checks/level_fidelity.h"
#include "level_fidelity_fixture.h"
#include "support/level_fidelity_reference.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

using namespace level_fidelity_test;

void expect_same_channel(const LevelFidelityChannel& fast, const ReferenceLevelChannel& plain) {
    EXPECT_EQ(fast.passed, plain.passed);
    EXPECT_EQ(fast.samples_included, plain.samples_included);
    EXPECT_EQ(fast.samples_excluded, plain.samples_excluded);
    EXPECT_EQ(fast.median_db, plain.median_db);
    EXPECT_EQ(fast.mad_db, plain.mad_db);
    EXPECT_EQ(fast.p99_abs_db, plain.p99_abs_db);
    EXPECT_EQ(fast.has_data, plain.has_data);
    EXPECT_EQ(fast.worst_sample, plain.worst_sample);
    EXPECT_EQ(fast.worst_diff_db, plain.worst_diff_db);
    EXPECT_EQ(fast.worst_ref_amp, plain.worst_ref_amp);
    EXPECT_EQ(fast.worst_dut_amp, plain.worst_dut_amp);
    EXPECT_EQ(fast.longest_sustained_run_ms, plain.longest_sustained_run_ms);
    EXPECT_EQ(fast.sustained_fail, plain.sustained_fail);
}

// Runs both on the pair and compares everything; returns the channel 0 included count.
std::uint64_t expect_identical(const WavFile& ref, const WavFile& dut, std::int64_t offset,
                               LevelSettings settings) {
    const LevelFidelityResult fast = run_level(ref, dut, settings, offset);
    ReferenceLevelInput input;
    input.ref = ref.samples;
    input.dut = dut.samples;
    input.channels = ref.channels;
    input.sample_rate = ref.sample_rate;
    input.offset = offset;
    input.floor_db = settings.floor_db;
    input.tolerance_db = settings.tolerance_db;
    input.min_run_ms = settings.min_run_ms;
    const ReferenceLevelResult plain = reference_level_fidelity(input);
    EXPECT_EQ(fast.channels, plain.channels);
    EXPECT_EQ(fast.passed, plain.passed);
    for (std::size_t k = 0; k < 2; ++k)
        expect_same_channel(fast.channel[k], plain.channel[k]);
    return fast.channel[0].samples_included;
}

// A DUT whose samples are the reference's times gains drawn from a short list (so many ratios
// tie exactly); some reference samples are dropped below the floor (held there, still included)
// and some pairs below it in both files (excluded).
std::vector<double> tied_dut(std::vector<double>& ref, std::uint64_t seed) {
    static const double gains_db[] = {-3.0, -1.0, 0.0, 0.0, 0.5, 2.0, 6.0};
    SignalRng rng = signal_rng(seed);
    std::vector<double> dut(ref.size());
    for (std::size_t i = 0; i < ref.size(); ++i) {
        const auto pick = static_cast<std::size_t>(signal_next_int(rng, 0, 8));
        if (pick < 7) {
            dut[i] = ref[i] * std::pow(10.0, gains_db[pick] / 20.0);
        } else if (pick == 7) {
            dut[i] = ref[i];
            ref[i] = 1e-6;
        } else {
            ref[i] = -2e-6;
            dut[i] = 3e-6;
        }
    }
    return dut;
}

TEST(LevelFidelityIdentity, TiedRatiosAtOddAndEvenCounts) {
    bool saw_odd = false;
    bool saw_even = false;
    const std::size_t sizes[] = {1, 2, 3, 4, 5, 10, 11, 100, 101, 1000, 1001, 4097};
    for (std::size_t size : sizes) {
        for (std::int64_t offset : {-7, 0, 5}) {
            std::vector<double> ref = level_signal(size * 31 + 1, size + 10);
            const std::vector<double> dut = tied_dut(ref, size * 17 + 3);
            const std::uint64_t included =
                expect_identical(mono_file(ref), mono_file(dut), offset, kGeneral);
            saw_odd = saw_odd || included % 2 == 1;
            saw_even = saw_even || (included > 0 && included % 2 == 0);
        }
    }
    EXPECT_TRUE(saw_odd);
    EXPECT_TRUE(saw_even);
}

TEST(LevelFidelityIdentity, RandomGainsBothSignsStereoBothProfiles) {
    for (std::uint64_t seed = 0; seed < 12; ++seed) {
        const std::size_t frames = 500 + seed * 37;
        const std::vector<double> left = level_signal(seed, frames);
        const std::vector<double> right = level_signal(seed + 100, frames);
        std::vector<double> dut_left = left;
        std::vector<double> dut_right = right;
        SignalRng rng = signal_rng(seed + 1000);
        for (std::size_t i = 0; i < frames; ++i) {
            dut_left[i] *= std::pow(10.0, signal_next_uniform(rng, -2.5, 2.5) / 20.0);
            dut_right[i] *= std::pow(10.0, signal_next_uniform(rng, -0.6, 0.4) / 20.0);
        }
        const WavFile ref = stereo_file(left, right);
        const WavFile dut = stereo_file(dut_left, dut_right);
        expect_identical(ref, dut, 0, kGeneral);
        expect_identical(ref, dut, static_cast<std::int64_t>(seed % 5) - 2, kImpulse);
    }
}

TEST(LevelFidelityIdentity, AllEqualRatios) {
    for (std::size_t frames : {1, 2, 7, 64, 999}) {
        const std::vector<double> signal = level_signal(frames, frames);
        std::vector<double> doubled = signal;
        for (double& value : doubled)
            value *= 2.0;
        expect_identical(mono_file(signal), mono_file(signal), 0, kGeneral);
        expect_identical(mono_file(signal), mono_file(doubled), 0, kGeneral);
        expect_identical(mono_file(doubled), mono_file(signal), 0, kImpulse);
    }
}

TEST(LevelFidelityIdentity, SilenceAndNoOverlap) {
    const std::vector<double> silence(300, 0.0);
    const std::vector<double> signal = level_signal(5, 300);
    expect_identical(mono_file(silence), mono_file(silence), 0, kGeneral);
    expect_identical(mono_file(signal), mono_file(signal), 300, kGeneral);
    expect_identical(mono_file(signal), mono_file(silence), -10, kImpulse);
}

} // namespace
