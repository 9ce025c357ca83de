// The analyze report's size is set by the charts' resolution, not by the length of the files:
// every chart draws 4096 envelope columns or one spectral frame, and each distinct trace is
// embedded once.
#include "analyze_fixture.h"
#include "cli_test_support.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace {

constexpr std::uint32_t kRate = 48000;
constexpr std::size_t kDutDelay = 120;

// The size of the all-cards report of a stereo pair `seconds` long: seeded noise, and the same
// noise `kDutDelay` frames late as the DUT.
std::uintmax_t report_size(std::size_t seconds) {
    const TempDir dir;
    const std::size_t frames = seconds * kRate;
    const std::vector<double> left = test_noise(1, frames);
    const std::vector<double> right = test_noise(2, frames);
    write_wav(dir.file("ref.wav"), kRate, 2, interleaved({left, right}));
    write_wav(dir.file("dut.wav"), kRate, 2,
              interleaved({delayed(left, kDutDelay), delayed(right, kDutDelay)}));
    const std::string out = dir.file("report.html");
    const ProcessOutput run = run_sonalyx(
        {"analyze", "--ref", dir.file("ref.wav"), "--dut", dir.file("dut.wav"), "--out", out,
         "--deepscan", "--impulse", "--bitaccuracy", "--snapshots", "3", "--quiet"});
    EXPECT_EQ(run.exit_status, 0) << run.err;
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(out, error);
    EXPECT_FALSE(error) << out;
    return error ? 0 : size;
}

TEST(ReportSize, TwentySecondStereoPageWithEveryCardStaysUnderOneAndAHalfMegabytes) {
    const std::uintmax_t size = report_size(20);
    EXPECT_GT(size, 100'000U);
    EXPECT_LT(size, 1'500'000U);
}

TEST(ReportSize, DoublingTheLengthGrowsThePageByLessThanOnePercent) {
    const std::uintmax_t short_page = report_size(20);
    const std::uintmax_t long_page = report_size(40);
    ASSERT_GT(short_page, 0U);
    EXPECT_LT(long_page, short_page + short_page / 100);
}

} // namespace
