// The impulse template check on whole files: the documented cases (identical files, the ratio,
// clicks in silence, a transient's core, short frames) and extreme inputs.
#include "checks/impulse_template.h"
#include "impulse_template_fixture.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

void expect_clean(const ImpulseTemplateChannel& channel) {
    EXPECT_TRUE(channel.passed);
    EXPECT_EQ(channel.total_fails, 0u);
    EXPECT_FALSE(channel.has_failures);
    EXPECT_EQ(channel.worst_sample, 0u);
    EXPECT_EQ(channel.worst_diff, 0.0);
    EXPECT_EQ(channel.worst_ref_amp, 0.0);
    EXPECT_EQ(channel.worst_dut_amp, 0.0);
}

void expect_single_fail(const ImpulseTemplateChannel& channel, std::uint64_t sample, double diff,
                        double ref_amp, double dut_amp) {
    EXPECT_FALSE(channel.passed);
    EXPECT_EQ(channel.total_fails, 1u);
    EXPECT_TRUE(channel.has_failures);
    EXPECT_EQ(channel.worst_sample, sample);
    EXPECT_EQ(channel.worst_diff, diff);
    EXPECT_EQ(channel.worst_ref_amp, ref_amp);
    EXPECT_EQ(channel.worst_dut_amp, dut_amp);
}

std::vector<double> scaled(const std::vector<double>& samples, double gain) {
    std::vector<double> out(samples);
    for (double& value : out)
        value *= gain;
    return out;
}

// Noise with clicks well above the peak level, in both polarities.
std::vector<double> clicky_noise(std::uint64_t seed, std::size_t frames) {
    std::vector<double> samples = signal_uniform(seed, frames, -0.2, 0.2);
    for (std::size_t i = 37; i < frames; i += 211)
        samples[i] = (i % 2 == 0 ? 0.95 : -0.9);
    return samples;
}

TEST(ImpulseTemplateCheck, IdenticalFilesPass) {
    const WavFile file = impulse_stereo(clicky_noise(1, 3000), clicky_noise(2, 3000));
    const ImpulseTemplateResult result = impulse_run(file, file, 0, 1000);
    EXPECT_TRUE(result.passed);
    EXPECT_EQ(result.channels, 2u);
    expect_clean(result.channel[0]);
    expect_clean(result.channel[1]);
}

TEST(ImpulseTemplateCheck, DutAtTheRatioPasses) {
    const std::vector<double> ref = clicky_noise(3, 3000);
    const ImpulseTemplateResult result =
        impulse_run(impulse_mono(ref), impulse_mono(scaled(ref, 1.25)), 0, 1000);
    EXPECT_TRUE(result.passed);
    expect_clean(result.channel[0]);
}

TEST(ImpulseTemplateCheck, DutAboveTheRatioFailsWhereItExceedsFloorAndEdges) {
    // A quiet sine (no runs) in one frame: the template is max(floor or edge level, 1.25 r).
    const std::vector<double> ref = signal_sine(37.0, 0.2, kImpulseRate, 2000);
    const std::vector<double> dut = scaled(ref, 1.3);
    std::uint64_t fails = 0;
    double worst = 0.0;
    std::uint64_t worst_at = 0;
    for (std::size_t i = 0; i < ref.size(); ++i) {
        const bool edge = i < kImpulseGuard || i >= ref.size() - kImpulseGuard;
        const double excess = std::fabs(dut[i]) - std::max(edge ? kImpulsePeak : kImpulseFloor,
                                                           1.25 * std::fabs(ref[i]));
        if (excess <= 0.0) continue;
        ++fails;
        if (excess > worst) {
            worst = excess;
            worst_at = i;
        }
    }
    ASSERT_GT(fails, 1000u);
    const ImpulseTemplateResult result = impulse_run(impulse_mono(ref), impulse_mono(dut));
    EXPECT_FALSE(result.passed);
    EXPECT_EQ(result.channel[0].total_fails, fails);
    EXPECT_EQ(result.channel[0].worst_sample, worst_at);
    EXPECT_EQ(result.channel[0].worst_diff, worst);
    EXPECT_EQ(result.channel[0].worst_ref_amp, std::fabs(ref[worst_at]));
    EXPECT_EQ(result.channel[0].worst_dut_amp, std::fabs(dut[worst_at]));
}

TEST(ImpulseTemplateCheck, DutAboveTheRatioFailsOnTheTransientPeakOnly) {
    std::vector<double> ref(200, 0.0);
    ref[100] = 0.4;
    ref[101] = -0.5;
    ref[102] = 0.4;
    // 1.3 x: 0.52, 0.65, 0.52 against the core level 0.625.
    const ImpulseTemplateResult result =
        impulse_run(impulse_mono(ref), impulse_mono(scaled(ref, 1.3)));
    expect_single_fail(result.channel[0], 101, 0.5 * 1.3 - 0.625, 0.5, 0.5 * 1.3);
}

TEST(ImpulseTemplateCheck, ClickBelowTheFloorInSilencePasses) {
    const double click = std::pow(10.0, -35.0 / 20.0);
    const ImpulseTemplateResult result =
        impulse_run(impulse_mono(std::vector<double>(2000, 0.0)),
                    impulse_mono(impulse_clicks(2000, {1000}, click)));
    EXPECT_TRUE(result.passed);
    expect_clean(result.channel[0]);
}

TEST(ImpulseTemplateCheck, ClickAtMinus20InSilenceFails) {
    const double click = std::pow(10.0, -20.0 / 20.0);
    const ImpulseTemplateResult result =
        impulse_run(impulse_mono(std::vector<double>(2000, 0.0)),
                    impulse_mono(impulse_clicks(2000, {1000}, -click)));
    EXPECT_FALSE(result.passed);
    expect_single_fail(result.channel[0], 1000, click - kImpulseFloor, 0.0, click);
}

TEST(ImpulseTemplateCheck, ClickAtMinus20WithinGuardOfAFrameEdgePasses) {
    const double click = std::pow(10.0, -20.0 / 20.0);
    const WavFile ref = impulse_mono(std::vector<double>(300, 0.0));
    const WavFile dut =
        impulse_mono(impulse_clicks(300, {0, 4, 95, 99, 100, 104, 295, 299}, click));
    const ImpulseTemplateResult result = impulse_run(ref, dut, 0, 100);
    EXPECT_TRUE(result.passed);
    expect_clean(result.channel[0]);
}

TEST(ImpulseTemplateCheck, ClickAtMinus20OneBeyondTheGuardFails) {
    const double click = std::pow(10.0, -20.0 / 20.0);
    const WavFile ref = impulse_mono(std::vector<double>(300, 0.0));
    const WavFile dut = impulse_mono(impulse_clicks(300, {5, 94, 105, 294}, click));
    const ImpulseTemplateResult result = impulse_run(ref, dut, 0, 100);
    EXPECT_FALSE(result.passed);
    EXPECT_EQ(result.channel[0].total_fails, 4u);
    EXPECT_EQ(result.channel[0].worst_sample, 5u); // equal excesses: the first stays
    EXPECT_EQ(result.channel[0].worst_diff, click - kImpulseFloor);
}

TEST(ImpulseTemplateCheck, TransientPeakingAtHalfAllowsCoreLevelTwoSamplesAround) {
    std::vector<double> ref(200, 0.0);
    ref[100] = 0.4;
    ref[101] = 0.5;
    ref[102] = -0.4;
    const WavFile ref_file = impulse_mono(ref);
    std::vector<double> dut(200, 0.0);
    for (std::size_t i = 98; i <= 104; ++i)
        dut[i] = (i % 2 == 0 ? 0.625 : -0.625);
    EXPECT_TRUE(impulse_run(ref_file, impulse_mono(dut)).passed);

    std::vector<double> wider = dut;
    wider[97] = 0.625; // outside the core, no neighbours: the floor
    expect_single_fail(impulse_run(ref_file, impulse_mono(wider)).channel[0], 97,
                       0.625 - kImpulseFloor, 0.0, 0.625);

    std::vector<double> higher = dut;
    higher[104] = 0.626;
    expect_single_fail(impulse_run(ref_file, impulse_mono(higher)).channel[0], 104, 0.626 - 0.625,
                       0.0, 0.626);
}

TEST(ImpulseTemplateCheck, FrameShorterThanTwoGuardsIsAtThePeakLevel) {
    const WavFile ref = impulse_mono(std::vector<double>(8, 0.0));
    EXPECT_TRUE(impulse_run(ref, impulse_mono(std::vector<double>(8, 0.3))).passed);
    const ImpulseTemplateResult result =
        impulse_run(ref, impulse_mono(std::vector<double>(8, -0.32)));
    EXPECT_EQ(result.channel[0].total_fails, 8u);
    EXPECT_EQ(result.channel[0].worst_sample, 0u);
    EXPECT_EQ(result.channel[0].worst_diff, 0.32 - kImpulsePeak);
}

TEST(ImpulseTemplateCheck, AllSilentFilesPass) {
    const std::vector<double> silence(5000, 0.0);
    const ImpulseTemplateResult result =
        impulse_run(impulse_stereo(silence, silence), impulse_stereo(silence, silence), 0, 1024);
    EXPECT_TRUE(result.passed);
    EXPECT_EQ(result.channels, 2u);
    expect_clean(result.channel[0]);
    expect_clean(result.channel[1]);
}

TEST(ImpulseTemplateCheck, OneFrameFiles) {
    const WavFile silent = impulse_mono({0.0});
    EXPECT_TRUE(impulse_run(silent, impulse_mono({0.3})).passed);
    const ImpulseTemplateResult loud = impulse_run(silent, impulse_mono({-0.5}));
    EXPECT_FALSE(loud.passed);
    expect_single_fail(loud.channel[0], 0, 0.5 - kImpulsePeak, 0.0, 0.5);
}

TEST(ImpulseTemplateCheck, MostNegativeCodeInSilenceFailsByItsFullMagnitude) {
    const WavFile ref = impulse_mono(std::vector<double>(100, 0.0));
    const double magnitude = -kMostNegative16;
    expect_single_fail(
        impulse_run(ref, impulse_mono(impulse_clicks(100, {50}, kMostNegative16))).channel[0], 50,
        magnitude - kImpulseFloor, 0.0, magnitude);
    expect_single_fail(
        impulse_run(ref, impulse_mono(impulse_clicks(100, {2}, kMostNegative16))).channel[0], 2,
        magnitude - kImpulsePeak, 0.0, magnitude);
}

TEST(ImpulseTemplateCheck, FullScaleTransientCapsTheCoreAtOne) {
    const WavFile ref = impulse_mono(impulse_clicks(100, {50}, kMostNegative16));
    // At the run itself the ratio allows 1.25 x; two samples away the core allows 1.0 only.
    const WavFile at_full_scale = impulse_mono(impulse_clicks(100, {48, 50, 52}, 1.0));
    EXPECT_TRUE(impulse_run(ref, at_full_scale).passed);
    const WavFile below_full_scale = impulse_mono(impulse_clicks(100, {48, 50}, kMostNegative16));
    expect_single_fail(impulse_run(ref, below_full_scale).channel[0], 48, -kMostNegative16 - 1.0,
                       0.0, -kMostNegative16);
}

TEST(ImpulseTemplateCheck, NonDefaultLevels) {
    // Floor -40 dBFS, peak level -20 dBFS, ratio 2.
    const std::vector<double> ref = signal_sine(50.0, 0.05, kImpulseRate, 1000);
    const auto run = [&ref](const std::vector<double>& dut) {
        return impulse_template_check(aligned_pair(impulse_mono(ref), impulse_mono(dut), 0), 8192,
                                      -20.0, 2.0, -40.0);
    };
    EXPECT_TRUE(run(scaled(ref, 1.99)).passed);
    EXPECT_FALSE(run(scaled(ref, 2.01)).passed);
    std::vector<double> quiet_click(1000, 0.0);
    quiet_click[500] = std::pow(10.0, -35.0 / 20.0);
    const ImpulseTemplateResult click = impulse_template_check(
        aligned_pair(impulse_mono(std::vector<double>(1000, 0.0)), impulse_mono(quiet_click), 0),
        8192, -20.0, 2.0, -40.0);
    expect_single_fail(click.channel[0], 500, quiet_click[500] - std::pow(10.0, -40.0 / 20.0), 0.0,
                       quiet_click[500]);
}

} // namespace
