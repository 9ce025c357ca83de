// The frame every card of the analyze report shares: the section with its id, the head with the
// title and badge, the body, and the badge rules (pass, fail, reference only, skipped).
#pragma once

#include "report/page/text_buffer.h"

#include <cstddef>
#include <cstdint>

struct Badge {
    const char* css_class = "info"; // "pass", "fail" or "info"
    const char* word = "Skipped";   // "Pass", "Fail", "Reference Only" or "Skipped"
};

// Skipped when the check did not run; Reference Only when it ran without gating; else Pass/Fail.
Badge check_badge(bool ran, bool gates, bool passed);

// "<section class=\"card\" id=\"%s\">\n<div class=\"card-head\">\n<div class=\"htext\">", the head
// HTML as given (e.g. "<h3>Level Fidelity</h3>"), "</div>\n", the badge when given, and
// "</div>\n<div class=\"card-body\">\n".
bool append_card_open(TextBuffer& page, const char* id, const char* head_html, const Badge* badge);
// "</div>\n</section>\n".
bool append_card_close(TextBuffer& page);

// "%.2f ms" below one second, else "%.3f s", for a frame index at `sample_rate`.
bool append_frame_time(TextBuffer& page, std::size_t frame, std::uint32_t sample_rate);
