// The four single-file cards of the plot page: the spectrum on a log and on a linear frequency
// scale, the waveform overview and the time energy in dB, each with one chart per channel block.
#pragma once

#include "report/page/plot_page.h"
#include "report/page/text_buffer.h"

bool append_plot_cards(TextBuffer& page, const PlotData& plot);
