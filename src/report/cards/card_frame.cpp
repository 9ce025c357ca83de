// The section, head and body every card shares, the badge rules and the frame-time text.
#include "report/cards/card_frame.h"

Badge check_badge(bool ran, bool gates, bool passed) {
    if (!ran) return {"info", "Skipped"};
    if (!gates) return {"info", "Reference Only"};
    return passed ? Badge{"pass", "Pass"} : Badge{"fail", "Fail"};
}

bool append_card_open(TextBuffer& page, const char* id, const char* head_html, const Badge* badge) {
    return text_append_format(page,
                              "<section class=\"card\" id=\"%s\">\n<div class=\"card-head\">\n"
                              "<div class=\"htext\">",
                              id) &&
           text_append(page, head_html) && text_append(page, "</div>\n") &&
           (badge == nullptr || text_append_format(page, "<span class=\"badge %s\">%s</span>\n",
                                                   badge->css_class, badge->word)) &&
           text_append(page, "</div>\n<div class=\"card-body\">\n");
}

bool append_card_close(TextBuffer& page) {
    return text_append(page, "</div>\n</section>\n");
}

bool append_frame_time(TextBuffer& page, std::size_t frame, std::uint32_t sample_rate) {
    const double seconds =
        sample_rate == 0 ? 0.0 : static_cast<double>(frame) / static_cast<double>(sample_rate);
    if (seconds < 1.0) return text_append_format(page, "%.2f ms", seconds * 1000.0);
    return text_append_format(page, "%.3f s", seconds);
}
