#include "results/json_entries.h"
#include "results/json_escape.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>

namespace {

FlatJson opened() {
    FlatJson json;
    EXPECT_TRUE(json_open(json));
    return json;
}

std::string escaped(std::string_view value) {
    std::string text = "stale";
    EXPECT_TRUE(json_escape_value(value, text));
    return text;
}

// "\u00xx" with lower-case hex, as a byte below 32 is written.
std::string unicode_escape(int byte) {
    const char hex[] = "0123456789abcdef";
    return std::string("\\u00") + hex[byte / 16] + hex[byte % 16];
}

TEST(JsonEntries, OpenWritesTheBrace) {
    FlatJson json;
    json.text = "left over";
    ASSERT_TRUE(json_open(json));
    EXPECT_EQ(json.text, "{\n");
}

TEST(JsonEntries, FourFormatsWithAndWithoutComma) {
    FlatJson json = opened();
    ASSERT_TRUE(json_text(json, "status", "analyzed"));
    ASSERT_TRUE(json_int(json, "sample_rate", 48000));
    ASSERT_TRUE(json_long(json, "frames", 9876543210L));
    ASSERT_TRUE(json_real(json, "ratio", 0.1234567));
    ASSERT_TRUE(json_int(json, "negative", -3, EntryEnd::last));
    EXPECT_EQ(json.text, "{\n"
                         "    \"status\": \"analyzed\",\n"
                         "    \"sample_rate\": 48000,\n"
                         "    \"frames\": 9876543210,\n"
                         "    \"ratio\": 0.123457,\n"
                         "    \"negative\": -3\n");
}

TEST(JsonEntries, RealsUseSixDecimals) {
    FlatJson json = opened();
    ASSERT_TRUE(json_real(json, "a", -200.0, EntryEnd::last));
    ASSERT_TRUE(json_real(json, "b", 2.5e-7, EntryEnd::last));
    EXPECT_EQ(json.text, "{\n    \"a\": -200.000000\n    \"b\": 0.000000\n");
}

TEST(JsonEntries, ExtremeNumbersAreWrittenWhole) {
    FlatJson json = opened();
    ASSERT_TRUE(json_int(json, "i", INT_MIN));
    ASSERT_TRUE(json_long(json, "l", LONG_MIN));
    // The longest real there is: 309 integer digits, sign, point and six decimals. std::to_string
    // prints a double as "%f", which is "%.6f".
    ASSERT_TRUE(json_real(json, "r", -DBL_MAX, EntryEnd::last));
    const std::string longest = std::to_string(-DBL_MAX);
    ASSERT_EQ(longest.size(), 317u);
    EXPECT_EQ(json.text, "{\n    \"i\": -2147483648,\n    \"l\": -9223372036854775808,\n"
                         "    \"r\": " +
                             longest + "\n");
}

TEST(JsonEntries, NonFiniteRealsFailTheEntry) {
    FlatJson json = opened();
    EXPECT_FALSE(json_real(json, "x", std::numeric_limits<double>::quiet_NaN()));
    EXPECT_FALSE(json_real(json, "x", std::numeric_limits<double>::infinity()));
    EXPECT_FALSE(json_real(json, "x", -std::numeric_limits<double>::infinity()));
    EXPECT_EQ(json.text, "{\n");
}

TEST(JsonEntries, CloseRemovesTheLastComma) {
    FlatJson json = opened();
    ASSERT_TRUE(json_int(json, "a", 1));
    ASSERT_TRUE(json_int(json, "b", 2));
    ASSERT_TRUE(json_close(json));
    EXPECT_EQ(json.text, "{\n    \"a\": 1,\n    \"b\": 2\n}\n");
}

TEST(JsonEntries, CloseKeepsALastEntryWrittenWithoutComma) {
    FlatJson json = opened();
    ASSERT_TRUE(json_text(json, "a", "x,"));
    ASSERT_TRUE(json_text(json, "b", "y", EntryEnd::last));
    ASSERT_TRUE(json_close(json));
    EXPECT_EQ(json.text, "{\n    \"a\": \"x,\",\n    \"b\": \"y\"\n}\n");
}

TEST(JsonEntries, QuoteBackslashTabNewlineReturnBecomeBackslashPairs) {
    EXPECT_EQ(escaped("a\"b\\c\td\ne\rf"), "a\\\"b\\\\c\\td\\ne\\rf");
}

TEST(JsonEntries, ControlBytesBecomeLowerCaseUnicodeEscapes) {
    EXPECT_EQ(escaped("\x01"), "\\u0001");
    EXPECT_EQ(escaped("\x1b[0m"), "\\u001b[0m");
    EXPECT_EQ(escaped("a\x1f"
                      "b"),
              "a\\u001fb");
    // A NUL inside the value is a byte like any other.
    EXPECT_EQ(escaped(std::string_view("x\0y", 3)), "x\\u0000y");
}

TEST(JsonEntries, EveryByteBelow32IsEscaped) {
    for (int b = 0; b < 32; ++b) {
        const char byte = static_cast<char>(b);
        std::string expected = unicode_escape(b);
        if (b == '\t') expected = "\\t";
        if (b == '\n') expected = "\\n";
        if (b == '\r') expected = "\\r";
        EXPECT_EQ(escaped(std::string_view(&byte, 1)), expected) << "byte " << b;
    }
}

TEST(JsonEntries, DeleteSlashAndBytesAbove127PassUnchanged) {
    EXPECT_EQ(escaped("\x7f/"), "\x7f/");
    const std::string utf8 = "Gr\xc3\xbc\xc3\x9f"
                             "e \xe2\x80\x93 \xe9\x9f\xb3 \xf0\x9f\x98\x80";
    EXPECT_EQ(escaped(utf8), utf8);
    std::string high;
    for (int b = 128; b < 256; ++b)
        high += static_cast<char>(b);
    EXPECT_EQ(escaped(high), high);
}

// The value escape and the byte rule that TextBuffer's JSON escape shares agree on every byte.
TEST(JsonEntries, ValueEscapeFollowsTheSharedByteRule) {
    for (int b = 0; b < 256; ++b) {
        const char byte = static_cast<char>(b);
        const std::string_view rule = json_escaped_byte(static_cast<unsigned char>(b));
        const std::string expected = rule.empty() ? std::string(1, byte) : std::string(rule);
        EXPECT_EQ(escaped(std::string_view(&byte, 1)), expected) << "byte " << b;
        const bool passes = b >= 32 && b != '"' && b != '\\';
        EXPECT_EQ(rule.empty(), passes) << "byte " << b;
    }
}

TEST(JsonEntries, LongValuesAreEscapedWhole) {
    EXPECT_EQ(escaped(std::string(5000, 'x')), std::string(5000, 'x'));
    EXPECT_EQ(escaped(std::string(5000, '"')).size(), 10000u);
    std::string controls;
    for (int i = 0; i < 1000; ++i)
        controls += '\x1b';
    std::string expected;
    for (int i = 0; i < 1000; ++i)
        expected += "\\u001b";
    EXPECT_EQ(escaped(controls), expected);
}

TEST(JsonEntries, LongTextEntryIsWrittenWhole) {
    // Every backslash doubles: the escaped value is 10,000 characters.
    const std::string value(5000, '\\');
    FlatJson json = opened();
    ASSERT_TRUE(json_text(json, "path", value));
    ASSERT_TRUE(json_text(json, "next", "n"));
    EXPECT_EQ(json.text,
              "{\n    \"path\": \"" + std::string(10000, '\\') + "\",\n    \"next\": \"n\",\n");
}

TEST(JsonEntries, LongKeysAreWrittenWhole) {
    const std::string key(2000, 'k');
    FlatJson json = opened();
    ASSERT_TRUE(json_int(json, key.c_str(), 7));
    ASSERT_TRUE(json_long(json, key.c_str(), 8));
    ASSERT_TRUE(json_real(json, key.c_str(), 1e200, EntryEnd::last));
    EXPECT_EQ(json.text, "{\n    \"" + key + "\": 7,\n    \"" + key + "\": 8,\n    \"" + key +
                             "\": " + std::to_string(1e200) + "\n");
}

TEST(JsonEntries, GuardTurnsExhaustedMemoryIntoFalse) {
    EXPECT_TRUE(json_guard_memory([] { return true; }));
    EXPECT_FALSE(json_guard_memory([] { return false; }));
    EXPECT_FALSE(json_guard_memory([]() -> bool { throw std::bad_alloc(); }));
    // A size past what a string can hold throws std::length_error before anything is allocated.
    EXPECT_FALSE(json_guard_memory([] {
        std::string text;
        text.reserve(text.max_size() + 1);
        return true;
    }));
}

TEST(JsonEntries, ObjectFarBeyond64KiBIsComplete) {
    FlatJson json = opened();
    for (int i = 0; i < 5000; ++i) {
        ASSERT_TRUE(json_real(json, ("key_" + std::to_string(i)).c_str(), i + 0.5));
    }
    ASSERT_TRUE(json_close(json));
    EXPECT_GT(json.text.size(), 100000u);
    EXPECT_TRUE(json.text.starts_with("{\n    \"key_0\": 0.500000,\n"));
    EXPECT_TRUE(json.text.ends_with(",\n    \"key_4999\": 4999.500000\n}\n"));
}

} // namespace
