// The footer every page ends with: the version, the generation time and, when given, who tested
// which product.
#include "report/page/page_frame.h"

#include "results/results.h"

namespace {

bool append_bold(TextBuffer& page, const std::string& text) {
    return text_append(page, "<b>") && text_append_html(page, text.c_str()) &&
           text_append(page, "</b>");
}

// "Tested by <b>engineer</b> &middot; <b>company</b>", either name alone, then the product; or
// "Product <b>product</b>" when no name is given.
bool append_tester_row(TextBuffer& page, const TesterInfo& tester) {
    const bool engineer = !tester.engineer.empty();
    const bool company = !tester.company.empty();
    const bool product = !tester.product.empty();
    if (!engineer && !company && !product) return true;
    if (!text_append(page, "<div class=\"footer-row-tester\">")) return false;
    if (engineer || company) {
        const std::string& first = engineer ? tester.engineer : tester.company;
        if (!text_append(page, "Tested by ") || !append_bold(page, first)) return false;
        if (engineer && company &&
            !(text_append(page, " &middot; ") && append_bold(page, tester.company)))
            return false;
        if (product &&
            !(text_append(page, " &middot; product ") && append_bold(page, tester.product)))
            return false;
    } else if (!(text_append(page, "Product ") && append_bold(page, tester.product))) {
        return false;
    }
    return text_append(page, "</div>\n");
}

} // namespace

bool append_footer(TextBuffer& page, const char* what, const TesterInfo* tester) {
    const std::string generated = utc_timestamp();
    return text_append(page, "<footer>\n<div class=\"footer-row-top\">\n") &&
           text_append_format(page, "<span><b>Sonalyx</b> v%s</span>\n", kSonalyxVersion) &&
           text_append_format(page, "<span>%s generated %s</span>\n</div>\n", what,
                              generated.c_str()) &&
           (tester == nullptr || append_tester_row(page, *tester)) &&
           text_append(page, "</footer>\n");
}
