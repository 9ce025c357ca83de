#include "report/cards/spectral_card.h"

#include "audio/audio.h"
#include "report/charts/spectral_chart.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <span>

namespace {

std::size_t chart_fft_size(const ReportInputs& in) {
    return in.results.config.spectral_fidelity.fft_size.value;
}

// The record's flagged peaks at bin * rate / N, each at the reference chart spectrum's level.
// The record keeps no band index for its peaks, so every label carries tier 0.
std::vector<SpectralPeakLabel> peak_labels(const SpectralChannelResult& record,
                                           std::span<const double> ref_db, double sample_rate,
                                           std::size_t n) {
    std::vector<SpectralPeakLabel> labels;
    for (const std::size_t bin : record.chart_peak_bins) {
        if (bin >= ref_db.size()) continue;
        const double freq_hz = static_cast<double>(bin) * sample_rate / static_cast<double>(n);
        labels.push_back({freq_hz, ref_db[bin], 0});
    }
    return labels;
}

SpectralTierLines record_tiers(const SpectralChannelResult& record) {
    return {record.chart_tiers.noise_floor_db, record.chart_tiers.low_level_threshold_db,
            record.chart_tiers.peak_threshold_db};
}

std::optional<SpectralFailMarker> record_fail_marker(const SpectralChannelResult& record) {
    if (record.passed) return std::nullopt;
    return SpectralFailMarker{record.worst_freq_hz, record.worst_diff_db};
}

bool append_record_spectra(TextBuffer& page, const ReportInputs& in,
                           const SpectralChannelResult& record, const SpectrumFigure& spectra,
                           const std::string& id_suffix) {
    if (spectra.ref_db.empty() || spectra.dut_db.empty()) return append_spectral_chart_note(page);
    const double sample_rate = static_cast<double>(in.ref.sample_rate);
    const std::vector<SpectralPeakLabel> peaks =
        peak_labels(record, spectra.ref_db, sample_rate, chart_fft_size(in));
    SpectralChartData chart;
    chart.ref_db = spectra.ref_db;
    chart.dut_db = spectra.dut_db;
    chart.bin_hz = sample_rate / static_cast<double>(chart_fft_size(in));
    chart.nyquist_hz = sample_rate / 2.0;
    chart.scale = FrequencyScale::log;
    chart.id_suffix = id_suffix.c_str();
    chart.tiers = record_tiers(record);
    chart.fail = record_fail_marker(record);
    chart.peaks = peaks;
    chart.data_sets = in.chart_data;
    return append_spectral_chart(page, chart);
}

} // namespace

std::string spectral_position_text(double seconds) {
    const long long tenths = static_cast<long long>(round_half_away_from_zero(seconds * 10.0));
    const long long minutes = tenths / 600;
    const double rest = static_cast<double>(tenths - minutes * 600) / 10.0;
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%d:%04.1f", static_cast<int>(minutes), rest);
    return text.data();
}

double frame_centre_seconds(const ReportInputs& in, std::uint64_t start) {
    return static_cast<double>(start + chart_fft_size(in) / 2) /
           static_cast<double>(in.ref.sample_rate);
}

bool append_record_chart(TextBuffer& page, const ReportInputs& in,
                         const SpectralChannelResult& record, const SpectrumFigure& spectra,
                         const ChartFrame& frame, const std::string& id_suffix) {
    return append_chart_frame_open(page, frame) &&
           append_record_spectra(page, in, record, spectra, id_suffix) &&
           append_chart_frame_close(page, frame);
}
