// JSON pieces shared by the charts' data elements, written with the JSON writer.
#pragma once

#include "report/charts/chart_svg.h"
#include "report/page/text_buffer.h"

// "<script type=\"application/json\" id=\"<id><suffix>\">{" and the plot area as the members
// chartLeft, chartRight, chartTop and chartBottom.
bool append_chart_data_open(TextBuffer& page, const char* id, const char* suffix,
                            const PlotArea& area);
// The members ",\"dbMin\":" and ",\"dbMax\":" of the level scale every chart shares.
bool append_chart_level_range(JsonOut out);
