#include "report/cards/compare_table.h"

#include "report/cards/card_pieces.h"

const char* fail_cell_attribute(bool failing) {
    return failing ? " class=\"fail\"" : "";
}

bool append_channel_table_open(TextBuffer& page, const char* title, std::uint32_t channels) {
    if (!text_append_format(page,
                            "<div class=\"compare-table-wrap\">\n<p class=\"compare-table-title\">"
                            "%s</p>\n<table class=\"compare-table\">\n<thead><tr><th "
                            "scope=\"col\"></th>",
                            title))
        return false;
    const unsigned columns = gallery_blocks(channels);
    for (unsigned c = 0; c < columns; ++c) {
        const char* head = columns == 2 ? channel_label(channels, c) : "Value";
        if (!text_append_format(page, "<th scope=\"col\">%s</th>", head)) return false;
    }
    return text_append(page, "</tr></thead>\n<tbody>\n");
}

bool append_table_row_open(TextBuffer& page, const char* name) {
    return text_append_format(page, "<tr><th scope=\"row\">%s</th>", name);
}

bool append_table_row_close(TextBuffer& page) {
    return text_append(page, "</tr>\n");
}

bool append_table_close(TextBuffer& page) {
    return text_append(page, "</tbody>\n</table>\n</div>\n");
}
