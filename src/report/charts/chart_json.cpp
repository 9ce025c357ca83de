// The opening and the level range of the charts' data elements.
#include "report/charts/chart_json.h"

#include "report/charts/chart_scales.h"

bool append_chart_data_open(TextBuffer& page, const char* id, const char* suffix,
                            const PlotArea& area) {
    const JsonOut out = text_json_out(page);
    return json_raw(out, "<script type=\"application/json\" id=\"") && json_raw(out, id) &&
           json_raw(out, suffix) && json_raw(out, "\">{") && json_key(out, "chartLeft") &&
           json_fixed(out, area.left, 1) && json_next_key(out, "chartRight") &&
           json_fixed(out, area.right, 1) && json_next_key(out, "chartTop") &&
           json_fixed(out, area.top, 1) && json_next_key(out, "chartBottom") &&
           json_fixed(out, area.bottom, 1);
}

bool append_chart_level_range(JsonOut out) {
    return json_next_key(out, "dbMin") && json_fixed(out, kChartDbMin, 1) &&
           json_next_key(out, "dbMax") && json_fixed(out, kChartDbMax, 1);
}
