// The pieces the analyze report, the plot page and the error page share: the document head, the
// top bar, the signal row's path blocks, the words for formats and channel counts, the footer and
// the closing of the document.
#pragma once

#include "report/page/text_buffer.h"
#include "results/results.h"

#include <cstdint>
#include <string>
#include <string_view>

// The text after the last '/' or '\' of `path`, cut at its last '.' unless that dot is its first
// character, at most 255 bytes.
std::string report_title_stem(std::string_view path);

// "16-bit", "24-bit", "32-bit", "32-bit float", "64-bit float" or "unknown" for a format code.
const char* format_word(std::uint32_t format);
// "Stereo" for exactly 2 channels, "Mono" for every other count.
const char* channel_word(std::uint32_t channels);

// The current time as "%Y-%m-%d %H:%M:%S UTC".
std::string utc_timestamp();

// From "<!doctype html>" to "<div class=\"dash\">\n": the head with the title `title_text`
// (HTML-escaped) followed by `title_suffix` (e.g. " -- Sonalyx Report") and the style sheet.
bool append_page_open(TextBuffer& page, std::string_view title_text, const char* title_suffix);

// The top bar with the brand glyph, `name` ("Sonalyx Report" or "Sonalyx Plot"), the version and
// the theme toggle.
bool append_top_bar(TextBuffer& page, const char* name);

// "<div class=\"signal-row\">\n" and the Reference and Device Under Test blocks with their paths
// (path escape); the caller closes the row.
bool append_signal_paths(TextBuffer& page, const char* ref_path, const char* dut_path);

// The footer: version, "<span>%s generated %s</span>" with `what` ("report" or "plot") and the UTC
// time, then the tester row when `tester` is given and any of its fields is set.
bool append_footer(TextBuffer& page, const char* what, const TesterInfo* tester);
