// The results JSON embedded in a script element. Only the exact bytes "</script" could end the
// element early, so they alone are rewritten (case-sensitive; "</SCRIPT" is copied unchanged).
#include "report/page/analyze_parts.h"

namespace {

constexpr std::string_view kScriptEnd = "</script";

} // namespace

bool append_results_element(TextBuffer& page, std::string_view json) {
    if (!text_append(page, "<script type=\"application/json\" id=\"sonalyx-results\">\n"))
        return false;
    std::size_t start = 0;
    for (std::size_t hit = json.find(kScriptEnd); hit != std::string_view::npos;
         hit = json.find(kScriptEnd, start)) {
        // Everything up to and including the '<', then a backslash before the '/'.
        if (!text_append_bytes(page, json.data() + start, hit + 1 - start) ||
            !text_append_char(page, '\\'))
            return false;
        start = hit + 1;
    }
    return text_append_bytes(page, json.data() + start, json.size() - start) &&
           text_append(page, "\n</script>\n");
}
