#include "report/page_output.h"

#include "audio/file_replacement.h"

#include <string_view>

bool finish_page(TextBuffer& page, bool built, const std::string& path) {
    const bool written =
        built && write_file_atomically(path, std::string_view(page.data, page.length));
    text_buffer_free(page);
    return written;
}
