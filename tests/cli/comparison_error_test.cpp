#include "cli/comparison_error.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(ComparisonError, MessagesAreJoinedBySemicolons) {
    std::string text;
    testing::internal::CaptureStderr();
    report_comparison_error(text, "%s sample rate %u Hz", "--ref", 16000u);
    report_comparison_error(text, "second %d", 2);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "error: --ref sample rate 16000 Hz\nerror: second 2\n");
    EXPECT_EQ(text, "--ref sample rate 16000 Hz; second 2");
}

TEST(ComparisonError, OneMessageIsCutTo1499Characters) {
    std::string text;
    const std::string long_message(2000, 'm');
    testing::internal::CaptureStderr();
    report_comparison_error(text, "%s", long_message.c_str());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "error: " + std::string(1499, 'm') + "\n");
    EXPECT_EQ(text, std::string(1499, 'm'));
}

TEST(ComparisonError, TheTextStopsGrowingAt1599Characters) {
    std::string text;
    const std::string message(1000, 'x');
    testing::internal::CaptureStderr();
    report_comparison_error(text, "%s", message.c_str());
    report_comparison_error(text, "%s", message.c_str());
    report_comparison_error(text, "third");
    testing::internal::GetCapturedStderr();
    ASSERT_EQ(text.size(), 1599u);
    EXPECT_EQ(text, message + "; " + std::string(597, 'x'));
}

} // namespace
