// JSON pieces shared by the charts' data elements.
#pragma once

#include "report/text_buffer.h"

#include <span>

// "\"name\":[" the values with `decimals` decimals separated by commas, then "]".
bool append_json_number_array(TextBuffer& page, const char* name, std::span<const double> values,
                              int decimals);
