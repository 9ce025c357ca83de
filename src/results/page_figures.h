// The waveform envelopes and spectra the analyze report draws, taken from both decoded files once
// the checks have run, so that the page writer only formats numbers it is given. The choices of
// what a chart shows (which channels, which detail window, which frame) are made here too.
#pragma once

#include "dsp/dsp.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

struct RunResults;
struct WavFile;

// The charts show at most this many channels: both of a stereo pair, else the first.
unsigned shown_channels(std::uint32_t channels);

// One waveform view of one channel: reference frames [first_frame, first_frame + frame_count),
// the DUT drawn at its aligned position (reference frame f against DUT frame f + file offset).
struct WaveformFigure {
    std::int64_t first_frame = 0;
    std::size_t frame_count = 0;
    Envelope ref;
    Envelope dut;
};

// The displayed spectra of one chart frame: the reference at the frame, the DUT at the same
// frame moved by the alignment offset. Either is empty when the frame does not fit its file.
struct SpectrumFigure {
    std::vector<double> ref_db;
    std::vector<double> dut_db;
};

// Half the detail view's width: 0.5 % of the file's frames, but at least this many frames.
inline constexpr std::size_t kMinDetailHalfWidth = 2048;

struct DetailWindow {
    std::int64_t first_frame = 0;
    std::size_t frame_count = 0;
};

// The frames from `worst` minus the half width to `worst` plus it, shifted to stay inside the
// file (and cut to the file when it is shorter than the view).
DetailWindow detail_window(std::size_t frames, std::uint64_t worst);

// The distortion channel a single chart and set of tiles shows: among the channels with a
// measurement the one with the largest worst-frame THD+N (the first on ties), which is the
// failing one whenever a channel failed; channel 0 when none was measured.
std::size_t distortion_shown_channel(const DistortionResult& result);
// False when the channel's overlap was too short or every frame was gated.
bool distortion_has_measurement(const DistortionChannelResult& channel);

// Everything the report draws, per shown channel.
struct PageFigures {
    std::array<WaveformFigure, 2> full;             // overview and full-signal charts
    std::array<WaveformFigure, 2> time_domain_zoom; // around the worst sample, when it ran
    std::array<WaveformFigure, 2> impulse_zoom;     // the same for the impulse template
    std::array<SpectrumFigure, 2> spectral_scan;    // the scan modes' chart frame
    std::array<std::vector<SpectrumFigure>, 2> spectral_snapshots; // one per snapshot
    SpectrumFigure distortion; // the worst frame of the shown channel, when measured
};

// Fills `figures` from the record and both files (the reference first, the DUT at the record's
// alignment offset).
void build_page_figures(const RunResults& results, const WavFile& ref, const WavFile& dut,
                        PageFigures& figures);

// What the plot page draws of one file, per shown channel: the displayed spectrum of fft_size
// frames centred in the file (from frame 0 when the file is shorter: the spectrum is then empty),
// and the whole file's envelope on the linear and on the dB scale.
struct PlotFigures {
    std::array<std::vector<double>, 2> spectrum_db;
    std::array<Envelope, 2> waveform;
    std::array<Envelope, 2> energy;
};

void build_plot_figures(const WavFile& file, std::size_t fft_size, PlotFigures& figures);
