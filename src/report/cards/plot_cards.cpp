#include "report/cards/plot_cards.h"

#include "report/cards/card_frame.h"
#include "report/cards/card_pieces.h"
#include "report/charts/chart_frame.h"
#include "report/charts/envelope_chart.h"
#include "report/charts/spectral_chart.h"

#include <string>
#include <vector>

namespace {

enum class PlotChart { spectrum_log, spectrum_linear, waveform, energy };

struct PlotCard {
    const char* id;
    const char* head;
    const char* frame_id; // the channel suffix follows
    const char* title;
    PlotChart chart;
};

constexpr PlotCard kPlotCards[] = {
    {"spectral", "<h3>Spectrum</h3>", "sx-spectral-frame", "Magnitude spectrum",
     PlotChart::spectrum_log},
    {"spectral-linear", "<h3>Frequency (Linear)</h3>", "sx-spectral-linear-frame",
     "Magnitude spectrum, linear frequency", PlotChart::spectrum_linear},
    {"overview", "<h3>Signal Overview</h3>", "sx-envelope-frame", "Full signal",
     PlotChart::waveform},
    {"energy", "<h3>Time Energy</h3>", "sx-energy-frame", "Full signal, dB scale",
     PlotChart::energy},
};

bool append_plot_spectrum(TextBuffer& page, const PlotData& plot, const std::vector<double>& levels,
                          PlotChart chart, const char* suffix, ChartDataSets& sets) {
    if (levels.empty()) return append_spectral_chart_note(page);
    const double rate = static_cast<double>(plot.file->sample_rate);
    SpectralChartData data;
    data.ref_db = levels;
    data.bin_hz = rate / static_cast<double>(plot.fft_size);
    data.nyquist_hz = rate / 2.0;
    data.scale = chart == PlotChart::spectrum_log ? FrequencyScale::log : FrequencyScale::linear;
    data.id_suffix = suffix;
    data.tiers.noise_floor_db = plot.noise_floor_db;
    data.data_sets = &sets;
    return append_spectral_chart(page, data);
}

// The energy chart's ids carry "-energy" so they differ from the overview chart's.
bool append_plot_envelope(TextBuffer& page, const PlotData& plot, unsigned channel, PlotChart chart,
                          const char* suffix, ChartDataSets& sets) {
    const bool energy = chart == PlotChart::energy;
    const std::string id_suffix = std::string(energy ? "-energy" : "") + suffix;
    EnvelopeView view;
    view.ref = energy ? &plot.figures.energy[channel] : &plot.figures.waveform[channel];
    view.sample_rate = plot.file->sample_rate;
    view.first_frame = 0;
    view.frame_count = plot.file->frames;
    view.scale = energy ? EnvelopeScale::db : EnvelopeScale::linear;
    view.id_suffix = id_suffix.c_str();
    view.title = "Full-file waveform overview";
    view.data_sets = &sets;
    return append_envelope_chart(page, view);
}

bool is_spectrum(PlotChart chart) {
    return chart == PlotChart::spectrum_log || chart == PlotChart::spectrum_linear;
}

bool append_plot_chart(TextBuffer& page, const PlotData& plot, const PlotCard& card,
                       unsigned channel, const std::vector<double>& levels, ChartDataSets& sets) {
    const char* suffix = channel_suffix(plot.file->channels, channel);
    const std::string frame_id = std::string(card.frame_id) + suffix;
    ChartFrame frame;
    frame.kind = is_spectrum(card.chart) ? ChartKind::spectral : ChartKind::waveform;
    frame.frame_id = frame_id.c_str();
    frame.title = card.title;
    frame.legend = ChartLegend::single_signal;
    // Plain "scope" frames: only the analyze report's overview card is marked "scope overview".
    if (!append_chart_frame_open(page, frame)) return false;
    const bool drawn = is_spectrum(card.chart)
                           ? append_plot_spectrum(page, plot, levels, card.chart, suffix, sets)
                           : append_plot_envelope(page, plot, channel, card.chart, suffix, sets);
    return drawn && append_chart_frame_close(page, frame);
}

bool append_plot_card(TextBuffer& page, const PlotData& plot, const PlotCard& card,
                      ChartDataSets& sets) {
    const Badge badge{"info", "Single File"};
    if (!append_card_open(page, card.id, card.head, &badge)) return false;
    const std::uint32_t channels = plot.file->channels;
    for (unsigned c = 0; c < gallery_blocks(channels); ++c) {
        if (!append_gallery_heading(page, channels, c) ||
            !append_plot_chart(page, plot, card, c, plot.figures.spectrum_db[c], sets)) {
            return false;
        }
    }
    return append_card_close(page);
}

} // namespace

bool append_plot_cards(TextBuffer& page, const PlotData& plot) {
    ChartDataSets sets;
    for (const PlotCard& card : kPlotCards) {
        if (!append_plot_card(page, plot, card, sets)) return false;
    }
    return true;
}
