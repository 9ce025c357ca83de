// Number arrays of the charts' data elements.
#include "report/chart_json.h"

bool append_json_number_array(TextBuffer& page, const char* name, std::span<const double> values,
                              int decimals) {
    if (!text_append_format(page, "\"%s\":[", name)) return false;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if ((i > 0 && !text_append_char(page, ',')) ||
            !text_append_fixed(page, values[i], decimals)) {
            return false;
        }
    }
    return text_append(page, "]");
}
