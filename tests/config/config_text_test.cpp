// Loading settings files: size limit, comment stripping and the brace balance check.
#include <gtest/gtest.h>

#include <string>

#include "config/config_text.h"
#include "config_fixture.h"

namespace {

std::string padded(std::string text, std::size_t size) {
    text.resize(size, ' ');
    return text;
}

std::string stripped_or_fail(std::string_view raw) {
    std::string out = "untouched";
    EXPECT_TRUE(strip_config_comments(raw, out)) << raw;
    return out;
}

TEST(ConfigText, FileOf16383BytesLoads) {
    const std::string content =
        padded("{\"general\": {\"length_mismatch_tolerance_pct\": 2.5}}", 16383);
    SettingsFile settings;
    ASSERT_TRUE(load_override_file(write_config_fixture(content), settings));
    ASSERT_TRUE(number_in(settings, SettingId::general_length_mismatch_tolerance_pct).has_value());
    EXPECT_EQ(*number_in(settings, SettingId::general_length_mismatch_tolerance_pct), 2.5);
}

TEST(ConfigText, FileOf16384BytesIsRefused) {
    const std::string content =
        padded("{\"general\": {\"length_mismatch_tolerance_pct\": 2.5}}", 16384);
    SettingsFile settings;
    EXPECT_FALSE(load_override_file(write_config_fixture(content), settings));
    std::string raw;
    EXPECT_FALSE(load_raw_config_text(write_config_fixture(content), raw));
}

TEST(ConfigText, RawTextIsTheFileByteForByte) {
    const std::string content = "{\r\n\t\"a\": 1 // note\r\n}";
    std::string raw;
    ASSERT_TRUE(load_raw_config_text(write_config_fixture(content), raw));
    EXPECT_EQ(raw, content);
}

TEST(ConfigText, MissingFileOrDirectoryFails) {
    std::string raw;
    EXPECT_FALSE(load_raw_config_text(testing::TempDir() + "no_such_settings.cfg", raw));
    EXPECT_FALSE(load_raw_config_text(testing::TempDir(), raw));
    SettingsFile settings;
    EXPECT_FALSE(load_override_file(testing::TempDir() + "no_such_settings.cfg", settings));
}

TEST(ConfigText, NulByteEndsTheText) {
    const std::string content = std::string("{\"a\": 1}") + '\0' + "{{{";
    std::string raw;
    ASSERT_TRUE(load_raw_config_text(write_config_fixture(content), raw));
    EXPECT_EQ(raw, "{\"a\": 1}");
    std::string text;
    EXPECT_TRUE(load_config_text(write_config_fixture(content), text));
}

TEST(ConfigText, SlashesInsideStringAreKept) {
    EXPECT_EQ(stripped_or_fail("{\"path\": \"a//b\"}"), "{\"path\": \"a//b\"}");
}

TEST(ConfigText, CommentAfterValueStripsOnlyRestOfLine) {
    EXPECT_EQ(stripped_or_fail("{\"a\": 1, // first\n\"b\": 2 // second\n}"),
              "{\"a\": 1, \n\"b\": 2 \n}");
}

TEST(ConfigText, CommentAtEndOfTextEnds) {
    EXPECT_EQ(stripped_or_fail("{\"a\": 1} // trailing"), "{\"a\": 1} ");
    EXPECT_EQ(stripped_or_fail("{}//"), "{}");
}

TEST(ConfigText, EscapedQuoteKeepsStringOpen) {
    EXPECT_EQ(stripped_or_fail("{\"t\": \"say \\\"//hi\\\" // x\"} // gone"),
              "{\"t\": \"say \\\"//hi\\\" // x\"} ");
}

TEST(ConfigText, SingleSlashIsCopied) {
    EXPECT_EQ(stripped_or_fail("{\"a\": 1 / 2}/"), "{\"a\": 1 / 2}/");
}

TEST(ConfigText, StrippedTextLimitIs16383Characters) {
    std::string out;
    EXPECT_TRUE(strip_config_comments(std::string(16383, 'x'), out));
    EXPECT_EQ(out.size(), 16383u);
    std::string refused = "kept";
    EXPECT_FALSE(strip_config_comments(std::string(16384, 'x'), refused));
    EXPECT_EQ(refused, "kept");
    // Comments do not count towards the limit.
    EXPECT_TRUE(strip_config_comments(std::string(16383, 'x') + "//" + std::string(50, 'c'), out));
}

TEST(ConfigText, BalancedBracesPass) {
    EXPECT_TRUE(config_braces_balanced("{}"));
    EXPECT_TRUE(config_braces_balanced("{\"a\": {\"b\": {}}}"));
    EXPECT_TRUE(config_braces_balanced("{\"a\": \"}\"}"));
    EXPECT_TRUE(config_braces_balanced("{\"a\": \"x\\\"}\"}"));
    EXPECT_TRUE(config_braces_balanced("{[}"));
    EXPECT_TRUE(config_braces_balanced(""));
}

TEST(ConfigText, UnbalancedBracesFail) {
    EXPECT_FALSE(config_braces_balanced("{"));
    EXPECT_FALSE(config_braces_balanced("{{}"));
    EXPECT_FALSE(config_braces_balanced("{}}{"));
}

TEST(ConfigText, ClosingBraceFirstFails) {
    EXPECT_FALSE(config_braces_balanced("}{"));
    EXPECT_FALSE(config_braces_balanced("}"));
}

TEST(ConfigText, UnterminatedStringFails) {
    EXPECT_FALSE(config_braces_balanced("{\"a\": \"open}"));
    EXPECT_FALSE(config_braces_balanced("{\"a\": \"ends in backslash\\"));
}

TEST(ConfigText, LoaderRefusesUnbalancedOrOpenText) {
    std::string text;
    EXPECT_FALSE(load_config_text(write_config_fixture("{\"a\": {\"b\": 1}"), text));
    EXPECT_FALSE(load_config_text(write_config_fixture("}{\"a\": 1}"), text));
    EXPECT_FALSE(load_config_text(write_config_fixture("{\"a\": \"open}"), text));
    SettingsFile defaults;
    EXPECT_FALSE(load_defaults_file(write_config_fixture("{\"general\": {"), defaults));
}

TEST(ConfigText, CommentedOutBraceDoesNotCount) {
    std::string text;
    ASSERT_TRUE(load_config_text(write_config_fixture("{\"a\": 1 // }\n}"), text));
    EXPECT_EQ(text, "{\"a\": 1 \n}");
}

} // namespace
