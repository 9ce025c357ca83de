// The last step of every page writer: the text built in memory goes into the output file in one
// piece, and the buffer is released whatever happened.
#pragma once

#include "audio/audio.h"
#include "report/page/text_buffer.h"

// Writes `page` into `out` when `built` is true (every append succeeded), then frees the buffer.
// True only when the page was built and written completely; putting the file in place is the
// caller's step.
bool finish_page(TextBuffer& page, bool built, FileReplacement& out);
