#include "results/json_entries.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace {

FlatJson opened(std::size_t capacity = kResultsJsonCapacity) {
    FlatJson json;
    EXPECT_TRUE(json_open(json, capacity));
    return json;
}

TEST(JsonEntries, OpenWritesTheBrace) {
    FlatJson json;
    json.text = "left over";
    ASSERT_TRUE(json_open(json, 100));
    EXPECT_EQ(json.text, "{\n");
    EXPECT_EQ(json.capacity, 100u);
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

TEST(JsonEntries, EscapesOnlyQuoteBackslashTabNewlineReturn) {
    std::string escaped;
    ASSERT_TRUE(json_escape_value("a\"b\\c\td\ne\rf", escaped));
    EXPECT_EQ(escaped, "a\\\"b\\\\c\\td\\ne\\rf");
    // Other control bytes, '/' and bytes above 127 pass unchanged.
    ASSERT_TRUE(json_escape_value("\x01/\x1f\x7f\xc3\xa9", escaped));
    EXPECT_EQ(escaped, "\x01/\x1f\x7f\xc3\xa9");
}

TEST(JsonEntries, EscapedValueLimitIs510Characters) {
    std::string escaped;
    EXPECT_TRUE(json_escape_value(std::string(510, 'x'), escaped));
    EXPECT_FALSE(json_escape_value(std::string(511, 'x'), escaped));
    // The limit counts escaped characters: 255 quotes become 510, 256 become 512.
    EXPECT_TRUE(json_escape_value(std::string(255, '"'), escaped));
    EXPECT_FALSE(json_escape_value(std::string(256, '"'), escaped));
    EXPECT_FALSE(json_escape_value(std::string(250, '\\') + std::string(11, 'x'), escaped));
}

TEST(JsonEntries, TextEntryWithTooLongValueFailsAndLeavesTheText) {
    FlatJson json = opened();
    EXPECT_TRUE(json_text(json, "k", std::string(510, 'v')));
    const std::string before = json.text;
    EXPECT_FALSE(json_text(json, "k", std::string(256, '\\')));
    EXPECT_EQ(json.text, before);
}

TEST(JsonEntries, TextLineBufferHolds599Characters) {
    // 4 blanks, 2 quotes, key, '"', ':', ' ', 2 quotes, value, ',' and '\n' = 12 + key + value.
    const std::string value(510, 'v');
    const std::string fits_key(599 - 12 - 510, 'k');
    FlatJson json = opened();
    ASSERT_TRUE(json_text(json, fits_key.c_str(), value));
    EXPECT_EQ(json.text.size(), 2u + 599u);
    EXPECT_FALSE(json_text(json, (fits_key + "k").c_str(), value));
    EXPECT_EQ(json.text.size(), 2u + 599u);
}

TEST(JsonEntries, IntegerLineBufferHolds127Characters) {
    // 4 blanks, 2 quotes, ':', ' ', value, ',' and '\n': 10 + key + digits.
    const std::string fits_key(127 - 10 - 1, 'k');
    FlatJson json = opened();
    ASSERT_TRUE(json_int(json, fits_key.c_str(), 7));
    ASSERT_TRUE(json_long(json, fits_key.c_str(), 7));
    EXPECT_FALSE(json_int(json, fits_key.c_str(), 17));
    EXPECT_FALSE(json_long(json, fits_key.c_str(), 17));
    EXPECT_EQ(json.text.size(), 2u + 2u * 127u);
}

TEST(JsonEntries, RealLineBufferHolds159Characters) {
    // "1.000000" is 8 characters: 10 + key + 8 = 159.
    const std::string fits_key(159 - 10 - 8, 'k');
    FlatJson json = opened();
    ASSERT_TRUE(json_real(json, fits_key.c_str(), 1.0));
    EXPECT_FALSE(json_real(json, fits_key.c_str(), 10.0));
    // A huge finite value does not fit the line either.
    EXPECT_FALSE(json_real(json, "k", 1e200));
    EXPECT_EQ(json.text.size(), 2u + 159u);
}

TEST(JsonEntries, AnEntryThatWouldReachTheEndFails) {
    const std::string line = "    \"a\": 1,\n"; // 12 characters after "{\n"
    FlatJson fits = opened(2 + line.size() + 1);
    EXPECT_TRUE(json_int(fits, "a", 1));
    EXPECT_EQ(fits.text, "{\n" + line);

    FlatJson full = opened(2 + line.size());
    EXPECT_FALSE(json_int(full, "a", 1));
    EXPECT_EQ(full.text, "{\n");
}

TEST(JsonEntries, CloseAlsoNeedsRoom) {
    // After the comma is removed the text is "{\n    \"a\": 1\n" (13 characters); "}\n" makes 15.
    FlatJson fits = opened(16);
    ASSERT_TRUE(json_int(fits, "a", 1));
    EXPECT_TRUE(json_close(fits));
    EXPECT_EQ(fits.text, "{\n    \"a\": 1\n}\n");

    FlatJson full = opened(15);
    ASSERT_TRUE(json_int(full, "a", 1));
    EXPECT_FALSE(json_close(full));
}

TEST(JsonEntries, OpenFailsWithoutRoomForTheBrace) {
    FlatJson json;
    EXPECT_FALSE(json_open(json, 2));
    EXPECT_TRUE(json_open(json, 3));
}

} // namespace
