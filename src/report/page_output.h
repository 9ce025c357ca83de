// The last step of every page and JSON writer: the text built in memory goes to disk in one
// piece, and the buffer is released whatever happened.
#pragma once

#include "report/text_buffer.h"

#include <string>

// Writes `page` to `path` when `built` is true (every append succeeded), then frees the buffer.
// True only when the page was built and written completely.
bool finish_page(TextBuffer& page, bool built, const std::string& path);
