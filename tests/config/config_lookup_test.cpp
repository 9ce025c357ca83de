// Key, section and array-element lookup by quoted-name search.
#include <gtest/gtest.h>

#include <string>

#include "config/config_lookup.h"
#include "config/config_text.h"

namespace {

std::string value_after(std::string_view text, std::string_view key) {
    const std::optional<std::size_t> pos = find_key_value(text, key);
    if (!pos) return "<absent>";
    return std::string(text.substr(*pos));
}

// A section `{"pad": "xx...x"}` of exactly `size` characters.
std::string section_of_size(std::size_t size) {
    const std::string frame = "{\"pad\": \"\"}";
    return "{\"pad\": \"" + std::string(size - frame.size(), 'x') + "\"}";
}

TEST(ConfigLookup, ValueStartsAfterColonAndBlanks) {
    EXPECT_EQ(value_after("{\"k\" \t\n\r: \r\n\t 5}", "k"), "5}");
    EXPECT_EQ(value_after("{\"k\":7}", "k"), "7}");
}

TEST(ConfigLookup, FirstMatchAnywhereWins) {
    EXPECT_EQ(value_after("{\"k\": 1, \"k\": 2}", "k"), "1, \"k\": 2}");
}

TEST(ConfigLookup, NestedKeyShadowsParentKeyWhenFirst) {
    EXPECT_EQ(value_after("{\"outer\": {\"k\": 1}, \"k\": 2}", "k"), "1}, \"k\": 2}");
}

TEST(ConfigLookup, QuotedValueEqualToKeyIsSkipped) {
    EXPECT_EQ(value_after("{\"name\": \"k\", \"k\": 3}", "k"), "3}");
}

TEST(ConfigLookup, KeyIsNotConfusedWithLongerKey) {
    EXPECT_EQ(value_after("{\"tester_info_enabled\": true}", "enabled"), "<absent>");
    EXPECT_EQ(value_after("{\"tester_info_enabled\": true, \"enabled\": false}", "enabled"),
              "false}");
}

TEST(ConfigLookup, KeyWithoutColonIsAbsent) {
    EXPECT_EQ(value_after("{\"list\": [\"k\", \"k\"]}", "k"), "<absent>");
    EXPECT_EQ(value_after("", "k"), "<absent>");
}

TEST(ConfigLookup, KeyAtEndOfTextHasEmptyValue) {
    const std::optional<std::size_t> pos = find_key_value("\"k\":  ", "k");
    ASSERT_TRUE(pos.has_value());
    EXPECT_EQ(*pos, 6u);
}

TEST(ConfigLookup, QuotedKeyMustFitLookupBuffer) {
    const std::string fits(kLookupKeyCapacity - 3, 'a');
    const std::string too_long(kLookupKeyCapacity - 2, 'a');
    EXPECT_EQ(value_after("{\"" + fits + "\": 1}", fits), "1}");
    EXPECT_EQ(value_after("{\"" + too_long + "\": 1}", too_long), "<absent>");
}

TEST(ConfigLookup, SectionIsCopiedBraceToBrace) {
    std::string section;
    ASSERT_TRUE(
        find_section("{\"s\": {\"a\": {\"b\": 1}, \"t\": \"}{\"} , \"x\": 2}", "s", section));
    EXPECT_EQ(section, "{\"a\": {\"b\": 1}, \"t\": \"}{\"}");
}

TEST(ConfigLookup, SectionSkipsEscapedQuotes) {
    std::string section;
    ASSERT_TRUE(find_section("{\"s\": {\"t\": \"a\\\"}\"}}", "s", section));
    EXPECT_EQ(section, "{\"t\": \"a\\\"}\"}");
}

TEST(ConfigLookup, SectionWhoseValueIsNotAnObjectIsAbsent) {
    std::string section = "untouched";
    EXPECT_FALSE(find_section("{\"s\": 5, \"s\": {\"a\": 1}}", "s", section));
    EXPECT_FALSE(find_section("{\"s\": [{\"a\": 1}]}", "s", section));
    EXPECT_FALSE(find_section("{\"t\": 1}", "s", section));
    EXPECT_EQ(section, "untouched");
}

TEST(ConfigLookup, UnterminatedSectionIsAbsent) {
    std::string section;
    EXPECT_FALSE(find_section("{\"s\": {\"a\": 1", "s", section));
    EXPECT_FALSE(find_section("{\"s\": {\"a\": \"}", "s", section));
}

TEST(ConfigLookup, SectionOf4095CharactersFits) {
    const std::string body = section_of_size(4095);
    std::string section;
    ASSERT_TRUE(find_section("{\"s\": " + body + "}", "s", section));
    EXPECT_EQ(section, body);
}

TEST(ConfigLookup, SectionOf4096CharactersOrMoreIsIgnored) {
    std::string section = "untouched";
    EXPECT_FALSE(find_section("{\"s\": " + section_of_size(4096) + "}", "s", section));
    EXPECT_FALSE(find_section("{\"s\": " + section_of_size(5000) + "}", "s", section));
    EXPECT_EQ(section, "untouched");
}

TEST(ConfigLookup, OnlyFirstOfDuplicateSectionsIsSeen) {
    std::string section;
    ASSERT_TRUE(find_section("{\"s\": {\"a\": 1}, \"s\": {\"a\": 2}}", "s", section));
    EXPECT_EQ(section, "{\"a\": 1}");
}

TEST(ConfigLookup, ArrayElementsByIndex) {
    const std::string text = "{\"arr\": [ ,{\"a\": 1} ,\n\t{\"b\": {\"c\": 2}},{\"d\": \"}\"}\r]}";
    std::string element;
    ASSERT_TRUE(get_array_element_object(text, "arr", 0, 256, element));
    EXPECT_EQ(element, "{\"a\": 1}");
    ASSERT_TRUE(get_array_element_object(text, "arr", 1, 256, element));
    EXPECT_EQ(element, "{\"b\": {\"c\": 2}}");
    ASSERT_TRUE(get_array_element_object(text, "arr", 2, 256, element));
    EXPECT_EQ(element, "{\"d\": \"}\"}");
    EXPECT_FALSE(get_array_element_object(text, "arr", 3, 256, element));
    EXPECT_EQ(element, "{\"d\": \"}\"}");
}

TEST(ConfigLookup, ArrayValueMustBeAnArray) {
    std::string element;
    EXPECT_FALSE(get_array_element_object("{\"arr\": {\"a\": 1}}", "arr", 0, 256, element));
    EXPECT_FALSE(get_array_element_object("{\"arr\": 3}", "arr", 0, 256, element));
    EXPECT_FALSE(get_array_element_object("{\"other\": [{}]}", "arr", 0, 256, element));
}

TEST(ConfigLookup, NonObjectElementEndsTheArray) {
    const std::string text = "{\"arr\": [{\"a\": 1}, 5, {\"b\": 2}]}";
    std::string element;
    EXPECT_TRUE(get_array_element_object(text, "arr", 0, 256, element));
    EXPECT_FALSE(get_array_element_object(text, "arr", 1, 256, element));
    EXPECT_FALSE(get_array_element_object(text, "arr", 2, 256, element));
}

TEST(ConfigLookup, ArrayElementMustFitCapacity) {
    const std::string text = "{\"arr\": [{\"a\": 12345}]}"; // element of 12 characters
    std::string element;
    EXPECT_TRUE(get_array_element_object(text, "arr", 0, 13, element));
    EXPECT_FALSE(get_array_element_object(text, "arr", 0, 12, element));
}

TEST(ConfigLookup, UnterminatedArrayElementFails) {
    std::string element;
    EXPECT_FALSE(get_array_element_object("{\"arr\": [{\"a\": 1", "arr", 0, 256, element));
    EXPECT_FALSE(get_array_element_object("{\"arr\": [{\"a\": 1", "arr", 1, 256, element));
    EXPECT_FALSE(get_array_element_object("{\"arr\": [", "arr", 0, 256, element));
}

} // namespace
