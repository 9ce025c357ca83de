// HTML reports: the analyze report with its check cards and charts, the plot page and plot JSON,
// the error page, and the style sheet and scripts every page embeds. Every page and JSON text is
// built in memory in a growable text buffer with HTML and JSON escapes, then written to disk in
// one piece without ever leaving a partial file. The chart writers (waveform envelope and
// spectrum) and the card pieces have headers of their own for tests.
#pragma once

#include "report/page/analyze_report.h"
#include "report/page/batch_index.h"
#include "report/page/page_assets.h"
#include "report/page/plot_page.h"
#include "report/page/text_buffer.h"
