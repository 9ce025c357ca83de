// The batch index page: one self-contained page over all pairs of a batch, with the counts of
// PASS, FAIL and ERROR pairs, the total time and a table of the pairs (sortable and filterable in
// the page) linking each pair's own report.
#pragma once

#include "report/page/text_buffer.h"
#include "results/results.h"

#include <span>
#include <string>

// The table's body rows, one per pair, in the given order.
bool append_batch_rows(TextBuffer& page, std::span<const BatchRow> rows);

// `link` percent-encoded for an href: every byte but letters, digits, '-', '.', '_', '~' and '/'.
std::string href_encoded(std::string_view link);

// Builds the whole page in `out`. False only when memory ran out; `out` is then empty.
bool write_batch_index_page(std::span<const BatchRow> rows, double total_seconds, std::string& out);
