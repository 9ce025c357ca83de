#include "report/page/page_asset_texts.h"
#include "report/report.h"

#include "page_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<BatchRow> sample_rows() {
    BatchRow pass{"a",   "a.wav", "ad.wav", "PASS", "",  "",      12,
                  0.125, -0.5,    -90.25,   0,      1.5, "a.html"};
    BatchRow fail{"b <&>", "b.wav", "bd.wav",    "FAIL", "Level Fidelity, Loudness",
                  "",      -7,      3.0,         2.25,   std::nullopt,
                  4,       2.75,    "b <&>.html"};
    BatchRow error{"c", "c.wav", "cd.wav", "ERROR", "", "could not <align>", {}, {},
                   {},  {},      {},       0.25,    ""};
    return {pass, fail, error};
}

std::string index_page(const std::vector<BatchRow>& rows, double total_seconds) {
    std::string page;
    EXPECT_TRUE(write_batch_index_page(rows, total_seconds, page));
    return page;
}

TEST(BatchIndexPage, CountsVerdictsAndTotalTime) {
    const std::string page = index_page(sample_rows(), 4.5);
    EXPECT_NE(page.find("<div class=\"kpi verdict\" id=\"batch-verdict-tile\">\n<div "
                        "class=\"k\">Batch Verdict</div>\n<div class=\"v\">FAIL</div>\n"),
              std::string::npos);
    EXPECT_NE(page.find("id=\"batch-total\">3 pairs in 4.5 s</div>"), std::string::npos);
    EXPECT_NE(page.find("id=\"count-pass\">\n<div class=\"k\">Passed</div>\n<div "
                        "class=\"v\">1</div>"),
              std::string::npos);
    EXPECT_NE(page.find("id=\"count-fail\">\n<div class=\"k\">Failed</div>\n<div "
                        "class=\"v\">1</div>"),
              std::string::npos);
    EXPECT_NE(page.find("id=\"count-error\">\n<div class=\"k\">Errors</div>\n<div "
                        "class=\"v\">1</div>"),
              std::string::npos);
}

TEST(BatchIndexPage, AllPassingBatchShowsPass) {
    const std::vector<BatchRow> rows(2, sample_rows()[0]);
    const std::string page = index_page(rows, 1.0);
    EXPECT_NE(page.find("class=\"kpi verdict ok\" id=\"batch-verdict-tile\">\n<div "
                        "class=\"k\">Batch Verdict</div>\n<div class=\"v\">PASS</div>"),
              std::string::npos);
}

TEST(BatchIndexPage, OneEscapedRowPerPairWithFiguresAndLinks) {
    const std::string page = index_page(sample_rows(), 4.5);
    EXPECT_EQ(count_of(page, "<tr data-verdict="), 3u);
    EXPECT_NE(page.find("<tr data-verdict=\"PASS\"><td>a</td><td><span class=\"badge "
                        "pass\">PASS</span></td><td></td><td class=\"num\" "
                        "data-value=\"12.000000\">12</td><td class=\"num\" "
                        "data-value=\"0.125000\">0.12</td><td class=\"num\" "
                        "data-value=\"-0.500000\">-0.50</td><td class=\"num\" "
                        "data-value=\"-90.250000\">-90.2</td><td class=\"num\" "
                        "data-value=\"0.000000\">0</td><td class=\"num\" "
                        "data-value=\"1.500000\">1.50</td><td><a "
                        "href=\"a.html\">a.html</a></td></tr>"),
              std::string::npos);
    EXPECT_NE(page.find("<td>b &lt;&amp;&gt;</td>"), std::string::npos);
    EXPECT_NE(page.find("<td>Level Fidelity, Loudness</td>"), std::string::npos);
    EXPECT_NE(page.find("<a href=\"b%20%3C%26%3E.html\">b &lt;&amp;&gt;.html</a>"),
              std::string::npos);
    EXPECT_NE(page.find("<td class=\"run-error-text\">could not &lt;align&gt;</td>"),
              std::string::npos);
    EXPECT_NE(page.find("<td class=\"unset\">no report</td>"), std::string::npos);
    EXPECT_EQ(count_of(page, "<td class=\"num unset\">&ndash;</td>"), 6u);
}

TEST(BatchIndexPage, SelfContainedWithThemeAndTableScripts) {
    const std::string page = index_page(sample_rows(), 4.5);
    EXPECT_EQ(page.rfind("<!doctype html>\n", 0), 0u);
    EXPECT_NE(page.find("id=\"themeToggle\""), std::string::npos);
    EXPECT_NE(page.find(kThemeJs), std::string::npos);
    EXPECT_NE(page.find(kBatchTableJs), std::string::npos);
    EXPECT_NE(page.find(kBatchCss), std::string::npos);
    EXPECT_EQ(count_of(page, "<th data-kind="), 10u);
    EXPECT_EQ(page.find("src="), std::string::npos);
    EXPECT_EQ(page.find("http"), std::string::npos);
    EXPECT_EQ(page.substr(page.size() - 8), "</html>\n");
}

TEST(BatchIndexPage, EmptyBatchHasAnEmptyTable) {
    const std::string page = index_page({}, 0.0);
    EXPECT_NE(page.find("<tbody>\n</tbody>"), std::string::npos);
    EXPECT_NE(page.find("0 pairs in 0.0 s"), std::string::npos);
}

TEST(BatchIndexPage, LinksArePercentEncoded) {
    EXPECT_EQ(href_encoded("plain-name_1.2~x/y.html"), "plain-name_1.2~x/y.html");
    EXPECT_EQ(href_encoded("a b#c?d%e\"f.html"), "a%20b%23c%3Fd%25e%22f.html");
    EXPECT_EQ(href_encoded("\xc3\xa9.html"), "%C3%A9.html");
}

} // namespace
