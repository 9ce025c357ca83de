// The navigation tabs: one link per card in page order, marked data-fail when the check ran and
// failed and data-nongating when that failure does not gate the overall verdict.
#include "report/analyze_parts.h"

#include "report/check_status.h"

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
                              exact ? bit_exact_status(results) : bit_accuracy_status(results),
                              exact ? "Bit-Exactness" : "Bit Accuracy");
}

bool append_optional_links(TextBuffer& page, const RunResults& results) {
    const AnalysisConfig& config = results.config;
    return (!config.time_domain.enabled.value ||
            append_marked_link(page, "timedomain", time_domain_status(results), "Time Domain")) &&
           (!config.impulse_template.enabled.value ||
            append_marked_link(page, "impulsetemplate", impulse_template_status(results),
                               "Impulse Template"));
}

} // namespace

bool append_nav_tabs(TextBuffer& page, const RunResults& results) {
    const char* alignment_fail = results.alignment.aligned ? "" : " data-fail";
    return text_append(page, "<nav class=\"nav-tabs\">\n") &&
           text_append_format(page, "<a href=\"#alignment\"%s>Signal Alignment</a>\n",
                              alignment_fail) &&
           text_append_format(page, "<a href=\"#spectral\"%s>Spectral Fidelity</a>\n",
                              fail_attribute(spectral_status(results))) &&
           text_append(page, "<a href=\"#overview\">Signal Overview</a>\n") &&
           append_bitexact_link(page, results) &&
           append_marked_link(page, "level", level_status(results), "Level Fidelity") &&
           append_marked_link(page, "artifact", artifact_status(results), "Artifact Detection") &&
           append_marked_link(page, "distortion", distortion_status(results), "Distortion") &&
           append_marked_link(page, "loudness", loudness_status(results), "Loudness") &&
           append_optional_links(page, results) && text_append(page, "</nav>\n");
}
