// printf-style appends: conversions, long results, and a formatting error.
#include "text_buffer_fixture.h"

#include <clocale>
#include <cstddef>
#include <cstdint>
#include <cwchar>
#include <string>

namespace {

using TextBufferFormat = TextBufferTest;

TEST_F(TextBufferFormat, TextAndIntegerConversions) {
    ASSERT_TRUE(text_append_format(buffer, "\"%s\": %d%s\n", "channels", -42, ","));
    EXPECT_EQ(content(), "\"channels\": -42,\n");
}

TEST_F(TextBufferFormat, RealWithSixDecimals) {
    ASSERT_TRUE(text_append_format(buffer, "%.6f %.6f %.2f", 3.14159265, -0.5, 99.995));
    EXPECT_EQ(content(), "3.141593 -0.500000 100.00");
}

TEST_F(TextBufferFormat, SizeAndLongConversions) {
    const std::size_t largest = static_cast<std::size_t>(-1);
    const long offset = -1234567890123L;
    ASSERT_TRUE(text_append_format(buffer, "%zu/%zu %ld %%", std::size_t{3}, largest, offset));
    EXPECT_EQ(content(), "3/18446744073709551615 -1234567890123 %");
}

TEST_F(TextBufferFormat, LongResultGrowsTheBuffer) {
    ASSERT_TRUE(text_append(buffer, "head:"));
    ASSERT_EQ(buffer.capacity, 256U);
    const std::string long_text(1000, 'x');
    ASSERT_TRUE(text_append_format(buffer, "%s<%u>", long_text.c_str(), 7U));
    EXPECT_EQ(buffer.length, 5U + 1000U + 3U);
    EXPECT_EQ(buffer.capacity, 1024U); // need 1009 from 256: 512, then 1024
    EXPECT_EQ(content(), "head:" + long_text + "<7>");
    EXPECT_EQ(buffer.data[buffer.length], '\0');
}

TEST_F(TextBufferFormat, ResultFillingTheBufferExactlyKeepsTheCapacity) {
    ASSERT_TRUE(text_append_format(buffer, "%s", std::string(255, 'k').c_str()));
    EXPECT_EQ(buffer.capacity, 256U);
    EXPECT_EQ(buffer.length, 255U);
    EXPECT_EQ(buffer.data[255], '\0');
}

TEST_F(TextBufferFormat, EmptyResultOnFreshBufferAllocatesJustTheNul) {
    ASSERT_TRUE(text_append_format(buffer, "%s", ""));
    ASSERT_NE(buffer.data, nullptr);
    EXPECT_EQ(buffer.capacity, 256U);
    EXPECT_EQ(buffer.length, 0U);
    EXPECT_EQ(buffer.data[0], '\0');
}

// Under the C locale a wide character outside ASCII has no multibyte form, so the conversion
// makes vsnprintf report an error.
TEST_F(TextBufferFormat, FormattingErrorReturnsFalseAndLeavesTheBufferUntouched) {
    ASSERT_NE(std::setlocale(LC_ALL, "C"), nullptr);
    const wchar_t euro[] = {static_cast<wchar_t>(0x20AC), L'\0'};

    EXPECT_FALSE(text_append_format(buffer, "a%lsb", euro));
    EXPECT_EQ(buffer.data, nullptr);
    EXPECT_EQ(buffer.length, 0U);
    EXPECT_EQ(buffer.capacity, 0U);

    ASSERT_TRUE(text_append(buffer, "kept"));
    const char* data = buffer.data;
    EXPECT_FALSE(text_append_format(buffer, "%d %ls", 5, euro));
    EXPECT_EQ(buffer.data, data);
    EXPECT_EQ(buffer.length, 4U);
    EXPECT_EQ(buffer.capacity, 256U);
    EXPECT_EQ(content(), "kept");
    EXPECT_EQ(buffer.data[4], '\0');
}

} // namespace
