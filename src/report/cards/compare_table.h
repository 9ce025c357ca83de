// The comparison tables of the Level Fidelity and Loudness cards: a head row, then rows of one
// header cell and value cells, a failing cell carrying class="fail".
#pragma once

#include "report/page/text_buffer.h"

#include <cstdint>

// From "<div class=\"compare-table-wrap\">" to the opening of the body: the title, an empty
// corner cell and "L" / "R" (stereo) or "Value" column heads.
bool append_channel_table_open(TextBuffer& page, const char* title, std::uint32_t channels);
// " class=\"fail\"" for a cell that shows a failing figure, else "".
const char* fail_cell_attribute(bool failing);

// "<tr><th scope=\"row\">%s</th>"; the cells follow and append_table_row_close ends the row.
bool append_table_row_open(TextBuffer& page, const char* name);
bool append_table_row_close(TextBuffer& page);
// "</tbody>\n</table>\n</div>\n".
bool append_table_close(TextBuffer& page);
