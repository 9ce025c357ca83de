// HTML reports: every page and JSON text is built in memory in a growable text buffer with HTML
// and JSON escapes, then written to disk in one piece without ever leaving a partial file.
#pragma once

#include "report/output_file.h"
#include "report/text_buffer.h"
