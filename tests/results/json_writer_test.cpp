#include "results/json_writer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace {

std::string printf_fixed(double value, int decimals) {
    std::vector<char> text(400);
    std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
    return text.data();
}

// A target that takes nothing: every append fails.
bool refuse(void* /*target*/, std::string_view /*bytes*/) {
    return false;
}

TEST(JsonWriter, FixedMatchesPrintf) {
    const double values[] = {0.0, -0.0, 0.5, 2.5, -1.00005, 1e-7, 123456.789, -140.0, 1e300};
    for (const double value : values) {
        for (int decimals : {0, 1, 2, 4, 6}) {
            JsonNumberChars chars{};
            EXPECT_EQ(json_format_fixed(value, decimals, chars), printf_fixed(value, decimals))
                << value << " with " << decimals;
        }
    }
}

TEST(JsonWriter, IntegerMatchesPrintf) {
    JsonNumberChars chars{};
    EXPECT_EQ(json_format_integer(-9223372036854775807L - 1, chars), "-9223372036854775808");
    EXPECT_EQ(json_format_integer(48000, chars), "48000");
}

TEST(JsonWriter, StringIsQuotedAndEscaped) {
    std::string text;
    ASSERT_TRUE(json_string(json_out(text), "a\"b\\c\td\x01/\xc3\xa9"));
    EXPECT_EQ(text, "\"a\\\"b\\\\c\\td\\u0001/\xc3\xa9\"");
}

TEST(JsonWriter, EmptyTextAppendsNothing) {
    ASSERT_TRUE(json_escaped(JsonOut{nullptr, refuse}, ""));
}

TEST(JsonWriter, MembersAndArrays) {
    std::string text;
    const JsonOut out = json_out(text);
    const std::vector<double> values{1.0, -0.25};
    const std::vector<std::uint8_t> flags{1, 0, 7};
    ASSERT_TRUE(json_raw(out, "{") && json_key(out, "v") && json_fixed_array(out, values, 2) &&
                json_next_key(out, "f") && json_flag_array(out, flags) && json_next_key(out, "e") &&
                json_fixed_array(out, {}, 2) && json_raw(out, "}"));
    EXPECT_EQ(text, "{\"v\":[1.00,-0.25],\"f\":[1,0,1],\"e\":[]}");
}

TEST(JsonWriter, SeparatorOnlyAfterTheFirst) {
    std::string text;
    const JsonOut out = json_out(text);
    ASSERT_TRUE(json_separator(out, 0) && json_integer(out, 1) && json_separator(out, 1) &&
                json_integer(out, 2));
    EXPECT_EQ(text, "1,2");
}

TEST(JsonWriter, FailedAppendStopsTheWriter) {
    const JsonOut out{nullptr, refuse};
    EXPECT_FALSE(json_string(out, "x"));
    EXPECT_FALSE(json_fixed_array(out, std::vector<double>{1.0}, 1));
    EXPECT_FALSE(json_key(out, "k"));
}

} // namespace
