#include "dsp/distortion_fixture.h"

#include "dsp/spectrum_frame.h"
#include "support/memory_wav.h"
#include "support/signal_gen.h"

#include <span>

WavFile distortion_wav(const std::vector<std::vector<double>>& channels) {
    return memory_wav(channels, static_cast<std::uint32_t>(kDistortionRate));
}

std::vector<double> distortion_tone(double frequency_hz, double amplitude, std::size_t frames) {
    return signal_sine(frequency_hz, amplitude, kDistortionRate, frames);
}

std::vector<double> distortion_mix(const std::vector<double>& base,
                                   const std::vector<double>& extra, double gain) {
    std::vector<double> out(base);
    for (std::size_t i = 0; i < out.size(); ++i) {
        out[i] += gain * extra[i];
    }
    return out;
}

FrameMeasurement distortion_measure_frame(const WavFile& ref, const WavFile& dut, unsigned channel,
                                          std::size_t start, std::int64_t offset, std::size_t n,
                                          std::size_t notch_bins) {
    std::vector<double> ref_mag(n / 2);
    std::vector<double> dut_mag(n / 2);
    spectrum_mag_frame(ref, channel, start, n, ref_mag.data());
    spectrum_mag_frame(dut, channel,
                       static_cast<std::size_t>(static_cast<std::int64_t>(start) + offset), n,
                       dut_mag.data());
    FrameMeasurement m;
    m.k0 = distortion_fundamental_bin(ref_mag);
    m.figure = distortion_thdn(ref_mag, dut_mag, m.k0, notch_bins);
    return m;
}
