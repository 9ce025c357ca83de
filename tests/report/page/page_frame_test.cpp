// The shared page pieces: title stems, format and channel words, the head, the top bar, the
// signal paths and the footer with its tester row.
#include "report/page/page_frame.h"

#include "audio/wav_file.h"
#include "page_text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string footer_with(const TesterInfo& tester) {
    const std::string text =
        render_text([&](TextBuffer& page) { return append_footer(page, "report", &tester); });
    return slice_of(text, "</div>\n", "</footer>\n");
}

} // namespace

TEST(PageFrame, TitleStemOfAHiddenFileKeepsItsDot) {
    EXPECT_EQ(report_title_stem("/a/b/.hidden"), ".hidden");
}

TEST(PageFrame, TitleStemCutsAtTheLastDotAfterABackslash) {
    EXPECT_EQ(report_title_stem("C:\\x\\take.1.wav"), "take.1");
}

TEST(PageFrame, TitleStemTakesTheLaterSeparatorOfEitherKind) {
    EXPECT_EQ(report_title_stem("C:\\x/y\\z.wav"), "z");
    EXPECT_EQ(report_title_stem("a\\b/c.d.e"), "c.d");
    EXPECT_EQ(report_title_stem("plain"), "plain");
    EXPECT_EQ(report_title_stem("dir.v2/noext"), "noext");
}

TEST(PageFrame, TitleStemKeepsAtMost255Bytes) {
    const std::string name(300, 'n');
    EXPECT_EQ(report_title_stem("/x/" + name + ".wav"), std::string(255, 'n'));
}

TEST(PageFrame, FormatWords) {
    EXPECT_STREQ(format_word(kWavFormatInt16), "16-bit");
    EXPECT_STREQ(format_word(kWavFormatInt24), "24-bit");
    EXPECT_STREQ(format_word(kWavFormatInt32), "32-bit");
    EXPECT_STREQ(format_word(kWavFormatFloat32), "32-bit float");
    EXPECT_STREQ(format_word(kWavFormatFloat64), "64-bit float");
    EXPECT_STREQ(format_word(8), "unknown");
}

TEST(PageFrame, OnlyTwoChannelsAreStereo) {
    EXPECT_STREQ(channel_word(2), "Stereo");
    EXPECT_STREQ(channel_word(1), "Mono");
    EXPECT_STREQ(channel_word(6), "Mono");
    EXPECT_STREQ(channel_word(0), "Mono");
}

TEST(PageFrame, TimestampIsUtcInTheFixedForm) {
    const std::string stamp = utc_timestamp();
    ASSERT_EQ(stamp.size(), 23u);
    EXPECT_EQ(stamp.substr(19), " UTC");
    EXPECT_EQ(stamp[4], '-');
    EXPECT_EQ(stamp[10], ' ');
    EXPECT_EQ(stamp[13], ':');
}

TEST(PageFrame, PageOpenEscapesTheTitleAndEndsWithTheDash) {
    const std::string text = render_text(
        [](TextBuffer& page) { return append_page_open(page, "a<b>", " -- Sonalyx Report"); });
    EXPECT_TRUE(text.starts_with(
        "<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
        "<title>a&lt;b&gt; -- Sonalyx Report</title>\n<style>"));
    EXPECT_TRUE(text.ends_with("</style>\n</head>\n<body>\n<div class=\"dash\">\n"));
}

TEST(PageFrame, TopBarHoldsTheGlyphNameVersionAndToggle) {
    const std::string text =
        render_text([](TextBuffer& page) { return append_top_bar(page, "Sonalyx Report"); });
    EXPECT_TRUE(text.starts_with(
        "<div class=\"topbar\">\n<div class=\"brand\">\n<span class=\"glyph\"><svg "
        "viewBox=\"0 0 24 24\""));
    EXPECT_NE(text.find("<circle cx=\"10\" cy=\"10\" r=\"6.3\" stroke-width=\"1.7\"/>"),
              std::string::npos);
    EXPECT_NE(text.find("points=\"4.6,10 6.4,10 7.8,6.5 9.6,13.5 11.2,7 12.6,12 14.4,12\" "
                        "stroke-width=\"1.8\" stroke-linecap=\"round\" stroke-linejoin=\"round\""),
              std::string::npos);
    EXPECT_NE(text.find("<line x1=\"14.46\" y1=\"14.46\" x2=\"19.6\" y2=\"19.6\" "
                        "stroke-width=\"2.2\" stroke-linecap=\"round\"/>"),
              std::string::npos);
    EXPECT_NE(text.find("</span>\n<span class=\"name\">Sonalyx Report</span>\n</div>\n<div "
                        "class=\"right\">\n<div class=\"meta\"><b>v0.7.1-beta</b></div>\n"
                        "<button type=\"button\" class=\"theme-toggle\" id=\"themeToggle\""),
              std::string::npos);
    EXPECT_TRUE(text.ends_with("</button>\n</div>\n</div>\n"));
}

TEST(PageFrame, SignalPathsBreakAfterSeparators) {
    const std::string text = render_text(
        [](TextBuffer& page) { return append_signal_paths(page, "/r/a&b.wav", "C:\\d.wav"); });
    EXPECT_EQ(text, "<div class=\"signal-row\">\n<div class=\"signal-id\">\n<span "
                    "class=\"tag\">Reference</span>\n<span class=\"fname\">/<wbr>r/<wbr>"
                    "a&amp;b.wav</span>\n</div>\n<div class=\"signal-id dut\">\n<span "
                    "class=\"tag\">Device Under Test</span>\n<span class=\"fname\">C:\\<wbr>"
                    "d.wav</span>\n</div>\n");
}

TEST(PageFrame, FooterWithoutTesterHasNoTesterRow) {
    const std::string text =
        render_text([](TextBuffer& page) { return append_footer(page, "plot", nullptr); });
    EXPECT_TRUE(text.starts_with("<footer>\n<div class=\"footer-row-top\">\n<span><b>Sonalyx</b> "
                                 "v0.7.1-beta</span>\n<span>plot generated "));
    EXPECT_TRUE(text.ends_with(" UTC</span>\n</div>\n</footer>\n"));
    EXPECT_EQ(footer_with(TesterInfo{}), "</div>\n</footer>\n");
}

TEST(PageFrame, TesterRowWithEveryField) {
    EXPECT_EQ(footer_with({"Ann <A>", "Box", "Acme"}),
              "</div>\n<div class=\"footer-row-tester\">Tested by <b>Ann &lt;A&gt;</b> &middot; "
              "<b>Acme</b> &middot; product <b>Box</b></div>\n</footer>\n");
}

TEST(PageFrame, TesterRowWithOneName) {
    EXPECT_EQ(footer_with({"Ann", "", ""}),
              "</div>\n<div class=\"footer-row-tester\">Tested by <b>Ann</b></div>\n</footer>\n");
    EXPECT_EQ(footer_with({"", "Box", "Acme"}),
              "</div>\n<div class=\"footer-row-tester\">Tested by <b>Acme</b> &middot; product "
              "<b>Box</b></div>\n</footer>\n");
}

TEST(PageFrame, TesterRowWithOnlyAProduct) {
    EXPECT_EQ(footer_with({"", "Box", ""}),
              "</div>\n<div class=\"footer-row-tester\">Product <b>Box</b></div>\n</footer>\n");
}
