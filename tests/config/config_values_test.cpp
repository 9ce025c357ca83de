// The number, integer, boolean and text getters: what each accepts and refuses.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "config/config_values.h"

namespace {

std::string with_value(std::string_view value) {
    return "{\"v\": " + std::string(value) + "}";
}

std::optional<double> number(std::string_view value) {
    double out = -12345.0;
    if (!get_number(with_value(value), "v", out)) {
        EXPECT_EQ(out, -12345.0) << "failed getter changed its output";
        return std::nullopt;
    }
    return out;
}

std::optional<std::int32_t> integer(std::string_view value) {
    std::int32_t out = -12345;
    if (!get_integer(with_value(value), "v", out)) {
        EXPECT_EQ(out, -12345) << "failed getter changed its output";
        return std::nullopt;
    }
    return out;
}

std::optional<bool> boolean(std::string_view value) {
    bool out = false;
    if (!get_boolean(with_value(value), "v", out)) return std::nullopt;
    return out;
}

std::optional<std::string> text(std::string_view value, std::size_t capacity = 256) {
    std::string out = "untouched";
    if (!get_text(with_value(value), "v", capacity, out)) {
        EXPECT_EQ(out, "untouched") << "failed getter changed its output";
        return std::nullopt;
    }
    return out;
}

TEST(ConfigValues, NumberAccepts) {
    EXPECT_EQ(number("1.5"), 1.5);
    EXPECT_EQ(number("-2e3"), -2000.0);
    EXPECT_EQ(number("1e3"), 1000.0);
    EXPECT_EQ(number("0.25,"), 0.25);
    EXPECT_EQ(number("7abc"), 7.0);
    EXPECT_EQ(number("-0.5E-1"), -0.05);
}

TEST(ConfigValues, NumberRefuses) {
    EXPECT_EQ(number("+1"), std::nullopt);
    EXPECT_EQ(number(".5"), std::nullopt);
    EXPECT_EQ(number("e3"), std::nullopt);
    EXPECT_EQ(number("-"), std::nullopt);
    EXPECT_EQ(number("-x"), std::nullopt);
    EXPECT_EQ(number("\"1\""), std::nullopt);
    EXPECT_EQ(number("true"), std::nullopt);
    double out = 0.0;
    EXPECT_FALSE(get_number("{\"v\":", "v", out));
    EXPECT_FALSE(get_number("{\"w\": 1}", "v", out));
}

TEST(ConfigValues, NumberAcceptsWhatTheConversionConsumesAfterMinus) {
    const std::optional<double> infinite = number("-inf");
    ASSERT_TRUE(infinite.has_value());
    EXPECT_TRUE(std::isinf(*infinite));
    EXPECT_LT(*infinite, 0.0);
}

TEST(ConfigValues, IntegerReadsDigitsUpToFirstNonDigit) {
    EXPECT_EQ(integer("4096.0"), 4096);
    EXPECT_EQ(integer("1.5"), 1);
    EXPECT_EQ(integer("12abc"), 12);
    EXPECT_EQ(integer("-12"), -12);
    EXPECT_EQ(integer("0"), 0);
    EXPECT_EQ(integer("1e3"), 1);
}

TEST(ConfigValues, IntegerRefuses) {
    EXPECT_EQ(integer("+4096"), std::nullopt);
    EXPECT_EQ(integer("-"), std::nullopt);
    EXPECT_EQ(integer("- 1"), std::nullopt);
    EXPECT_EQ(integer(".5"), std::nullopt);
    EXPECT_EQ(integer("\"4\""), std::nullopt);
    EXPECT_EQ(integer("true"), std::nullopt);
}

TEST(ConfigValues, IntegerWrapsWithoutOverflowCheck) {
    EXPECT_EQ(integer("2147483647"), 2147483647);
    EXPECT_EQ(integer("2147483648"), -2147483647 - 1);
    EXPECT_EQ(integer("4294967297"), 1);
    EXPECT_EQ(integer("-2147483648"), -2147483647 - 1);
}

TEST(ConfigValues, BooleanChecksOnlyTheWord) {
    EXPECT_EQ(boolean("true"), true);
    EXPECT_EQ(boolean("false"), false);
    EXPECT_EQ(boolean("trueish"), true);
    EXPECT_EQ(boolean("falsey"), false);
}

TEST(ConfigValues, BooleanRefuses) {
    EXPECT_EQ(boolean("\"true\""), std::nullopt);
    EXPECT_EQ(boolean("TRUE"), std::nullopt);
    EXPECT_EQ(boolean("1"), std::nullopt);
    EXPECT_EQ(boolean("tru"), std::nullopt);
    EXPECT_EQ(boolean("fals"), std::nullopt);
}

TEST(ConfigValues, TextPlainAndEscapes) {
    EXPECT_EQ(text("\"hello world\""), "hello world");
    EXPECT_EQ(text("\"\""), "");
    EXPECT_EQ(text(R"("a\\b\"c\/d")"), "a\\b\"c/d");
    EXPECT_EQ(text(R"("1\n2\r3\t4")"), "1\n2\r3\t4");
    EXPECT_EQ(text("\"a//b\""), "a//b");
}

TEST(ConfigValues, UnicodeEscapeKeepsLowSevenBits) {
    EXPECT_EQ(text(R"("\u00e9")"), std::string(1, static_cast<char>(0x69)));
    EXPECT_EQ(text(R"("\u0041\u00C1")"), "AA");
    EXPECT_EQ(text(R"("x\u0000y")"), "x");
}

TEST(ConfigValues, TextRefusesOtherEscapes) {
    EXPECT_EQ(text(R"("a\bc")"), std::nullopt);
    EXPECT_EQ(text(R"("a\fc")"), std::nullopt);
    EXPECT_EQ(text(R"("a\xc")"), std::nullopt);
    EXPECT_EQ(text(R"("\u12")"), std::nullopt);
    EXPECT_EQ(text(R"("\u12g4")"), std::nullopt);
}

TEST(ConfigValues, TextRefusesUnquotedOrUnterminated) {
    EXPECT_EQ(text("abc"), std::nullopt);
    std::string out;
    EXPECT_FALSE(get_text("{\"v\": \"open", "v", 256, out));
    EXPECT_FALSE(get_text("{\"v\": \"open\\", "v", 256, out));
}

TEST(ConfigValues, TextNeverTruncates) {
    EXPECT_EQ(text("\"" + std::string(31, 'a') + "\"", 32), std::string(31, 'a'));
    EXPECT_EQ(text("\"" + std::string(32, 'a') + "\"", 32), std::nullopt);
    // The capacity counts decoded characters: six escapes decode to six bytes.
    EXPECT_EQ(text(R"("\u0041\u0042\u0043\n\t\\")", 7), "ABC\n\t\\");
    EXPECT_EQ(text(R"("\u0041\u0042\u0043\n\t\\")", 6), std::nullopt);
}

} // namespace
