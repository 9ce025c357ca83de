#include "results/page_figures.h"

#include "dsp/dsp.h"
#include "results/run_results.h"

#include <algorithm>

namespace {

WaveformFigure waveform(const WavFile& ref, const WavFile& dut, std::int64_t offset,
                        unsigned channel, DetailWindow view) {
    WaveformFigure figure;
    figure.first_frame = view.first_frame;
    figure.frame_count = view.frame_count;
    figure.ref =
        reduce_envelope(ref, channel, view.first_frame, view.frame_count, 0, EnvelopeScale::linear);
    figure.dut = reduce_envelope(dut, channel, view.first_frame, view.frame_count, offset,
                                 EnvelopeScale::linear);
    return figure;
}

// The detail view around a channel's worst sample; without a failing sample the record's worst
// sample stays 0 and the view opens the file.
template <typename Channel>
DetailWindow worst_sample_window(const Channel& channel, std::size_t frames) {
    return detail_window(frames, channel.has_failures ? channel.worst_sample : 0);
}

// The same view reduced for another chart is copied rather than reduced again.
WaveformFigure zoom_figure(const WavFile& ref, const WavFile& dut, std::int64_t offset,
                           unsigned channel, DetailWindow view, const WaveformFigure* same) {
    if (same != nullptr && same->first_frame == view.first_frame &&
        same->frame_count == view.frame_count)
        return *same;
    return waveform(ref, dut, offset, channel, view);
}

SpectrumFigure spectra_at(const WavFile& ref, const WavFile& dut, std::int64_t offset,
                          unsigned channel, std::uint64_t ref_start, std::size_t n) {
    SpectrumFigure figure;
    figure.ref_db = display_spectrum_db(ref, channel, ref_start, n);
    const std::int64_t dut_start = static_cast<std::int64_t>(ref_start) + offset;
    if (dut_start >= 0)
        figure.dut_db = display_spectrum_db(dut, channel, static_cast<std::size_t>(dut_start), n);
    return figure;
}

void build_waveforms(const RunResults& r, const WavFile& ref, const WavFile& dut,
                     PageFigures& figures) {
    const std::int64_t offset = r.alignment.file_offset;
    for (unsigned c = 0; c < shown_channels(ref.channels); ++c) {
        figures.full[c] = waveform(ref, dut, offset, c, {0, ref.frames});
        const WaveformFigure* td_zoom = nullptr;
        if (r.time_domain.ran) {
            const DetailWindow view =
                worst_sample_window(r.time_domain.result.channel[c], ref.frames);
            figures.time_domain_zoom[c] = waveform(ref, dut, offset, c, view);
            td_zoom = &figures.time_domain_zoom[c];
        }
        if (r.impulse_template.ran) {
            const DetailWindow view =
                worst_sample_window(r.impulse_template.result.channel[c], ref.frames);
            figures.impulse_zoom[c] = zoom_figure(ref, dut, offset, c, view, td_zoom);
        }
    }
}

void build_spectra(const RunResults& r, const WavFile& ref, const WavFile& dut,
                   PageFigures& figures) {
    const std::int64_t offset = r.alignment.file_offset;
    const std::size_t n = r.config.spectral_fidelity.fft_size.value;
    const SpectralOutcome& spectral = r.spectral.result;
    for (unsigned c = 0; r.spectral.ran && c < shown_channels(ref.channels); ++c) {
        if (!spectral.snapshot_mode) {
            const std::uint64_t start = spectral.scan.channel[c].chart_frame_start;
            figures.spectral_scan[c] = spectra_at(ref, dut, offset, c, start, n);
            continue;
        }
        for (const SpectralSnapshot& snapshot : spectral.snapshots.snapshots) {
            const std::uint64_t start = snapshot.channel[c].chart_frame_start;
            figures.spectral_snapshots[c].push_back(spectra_at(ref, dut, offset, c, start, n));
        }
    }
    const DistortionResult& distortion = r.distortion.result;
    const std::size_t shown = distortion_shown_channel(distortion);
    if (r.distortion.ran && distortion_has_measurement(distortion.channel[shown])) {
        const std::uint64_t start = distortion.channel[shown].worst_frame_start;
        figures.distortion = spectra_at(ref, dut, offset, static_cast<unsigned>(shown), start, n);
    }
}

} // namespace

unsigned shown_channels(std::uint32_t channels) {
    return channels == 2 ? 2 : 1;
}

DetailWindow detail_window(std::size_t frames, std::uint64_t worst) {
    const std::size_t half = std::max(frames / 200, kMinDetailHalfWidth);
    const std::size_t count = std::min(2 * half, frames);
    const std::size_t centre = std::min<std::size_t>(worst, frames);
    const std::size_t first = std::min(centre - std::min(centre, half), frames - count);
    return {static_cast<std::int64_t>(first), count};
}

std::size_t distortion_shown_channel(const DistortionResult& result) {
    std::size_t shown = 0;
    const std::size_t channels = std::min<std::size_t>(result.channels, 2);
    for (std::size_t c = 1; c < channels; ++c) {
        const DistortionChannelResult& candidate = result.channel[c];
        const DistortionChannelResult& current = result.channel[shown];
        if (!distortion_has_measurement(candidate)) continue;
        if (!distortion_has_measurement(current) || candidate.thdn_ratio > current.thdn_ratio)
            shown = c;
    }
    return shown;
}

bool distortion_has_measurement(const DistortionChannelResult& channel) {
    return !channel.insufficient_samples && !channel.frame_gated && channel.frames_scanned > 0;
}

void build_page_figures(const RunResults& results, const WavFile& ref, const WavFile& dut,
                        PageFigures& figures) {
    figures = PageFigures{};
    build_waveforms(results, ref, dut, figures);
    build_spectra(results, ref, dut, figures);
}

void build_plot_figures(const WavFile& file, std::size_t fft_size, PlotFigures& figures) {
    figures = PlotFigures{};
    const std::size_t start = file.frames >= fft_size ? (file.frames - fft_size) / 2 : 0;
    for (unsigned c = 0; c < shown_channels(file.channels); ++c) {
        figures.spectrum_db[c] = display_spectrum_db(file, c, start, fft_size);
        figures.waveform[c] = reduce_envelope(file, c, 0, file.frames, 0, EnvelopeScale::linear);
        figures.energy[c] = reduce_envelope(file, c, 0, file.frames, 0, EnvelopeScale::db);
    }
}
