// The navigation tabs: one link per card in page order, marked data-fail when the check ran and
// failed and data-nongating when that failure does not gate the overall verdict.
#include "report/page/analyze_parts.h"

#include "report/cards/check_status.h"

namespace {

const char* fail_attribute(const CheckStatus& status) {
    return check_failed(status) ? " data-fail" : "";
}

const char* nongating_attribute(const CheckStatus& status) {
    return check_failed_nongating(status) ? " data-nongating" : "";
}

bool append_marked_link(TextBuffer& page, const char* anchor, const CheckStatus& status,
                        const char* text) {
    return text_append_format(page, "<a href=\"#%s\"%s%s>%s</a>\n", anchor, fail_attribute(status),
                              nongating_attribute(status), text);
}

bool append_bitexact_link(TextBuffer& page, const RunResults& results) {
    const bool exact = results.bit_exact.ran;
    if (!exact && !results.config.bit_accuracy.enabled.value) return true;
    return append_marked_link(page, "bitexact",
                              exact ? check_status(results, GatingCheck::bitexact)
                                    : bit_accuracy_status(results),
                              exact ? "Bit-Exactness" : "Bit Accuracy");
}

bool append_optional_links(TextBuffer& page, const RunResults& results) {
    const AnalysisConfig& config = results.config;
    return (!config.time_domain.enabled.value ||
            append_marked_link(page, "timedomain", check_status(results, GatingCheck::time_domain),
                               "Time Domain")) &&
           (!config.impulse_template.enabled.value ||
            append_marked_link(page, "impulsetemplate",
                               check_status(results, GatingCheck::impulse_template),
                               "Impulse Template"));
}

} // namespace

bool append_nav_tabs(TextBuffer& page, const RunResults& results) {
    const char* alignment_fail = results.alignment.aligned ? "" : " data-fail";
    return text_append(page, "<nav class=\"nav-tabs\">\n") &&
           text_append_format(page, "<a href=\"#alignment\"%s>Signal Alignment</a>\n",
                              alignment_fail) &&
           text_append_format(page, "<a href=\"#spectral\"%s>Spectral Fidelity</a>\n",
                              fail_attribute(check_status(results, GatingCheck::spectral))) &&
           text_append(page, "<a href=\"#overview\">Signal Overview</a>\n") &&
           append_bitexact_link(page, results) &&
           append_marked_link(page, "level", check_status(results, GatingCheck::levelfidelity),
                              "Level Fidelity") &&
           append_marked_link(page, "artifact", check_status(results, GatingCheck::artifact),
                              "Artifact Detection") &&
           append_marked_link(page, "distortion", check_status(results, GatingCheck::distortion),
                              "Distortion") &&
           append_marked_link(page, "loudness", check_status(results, GatingCheck::loudness),
                              "Loudness") &&
           append_optional_links(page, results) && text_append(page, "</nav>\n");
}
