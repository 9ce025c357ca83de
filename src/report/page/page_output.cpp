#include "report/page/page_output.h"

bool finish_page(TextBuffer& page, bool built, FileReplacement& out) {
    const bool written =
        built && replacement_write_text(out, std::string_view(page.data, page.length));
    text_buffer_free(page);
    return written;
}
