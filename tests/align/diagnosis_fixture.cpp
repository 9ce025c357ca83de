#include "diagnosis_fixture.h"

#include "support/signal_gen.h"

#include <cstdarg>
#include <cstdio>

std::vector<double> diag_noise(std::uint64_t seed, std::size_t frames) {
    return signal_uniform(seed, frames, -0.5, 0.5);
}

std::vector<double> diag_delayed(std::span<const double> signal, std::size_t count) {
    std::vector<double> out(count, 0.0);
    out.insert(out.end(), signal.begin(), signal.end());
    return out;
}

std::vector<double> diag_advanced(std::span<const double> signal, std::size_t count) {
    return {signal.begin() + static_cast<std::ptrdiff_t>(count), signal.end()};
}

std::vector<double> diag_negated(std::span<const double> signal) {
    std::vector<double> out(signal.begin(), signal.end());
    for (double& value : out)
        value = -value;
    return out;
}

std::vector<double> diag_overwritten(std::span<const double> base, std::size_t from,
                                     std::span<const double> replacement) {
    std::vector<double> out(base.begin(), base.end());
    for (std::size_t i = 0; i < replacement.size(); ++i)
        out[from + i] = replacement[i];
    return out;
}

std::vector<double> diag_inserted(std::span<const double> base, std::size_t at,
                                  std::span<const double> inserted) {
    std::vector<double> out(base.begin(), base.begin() + static_cast<std::ptrdiff_t>(at));
    out.insert(out.end(), inserted.begin(), inserted.end());
    out.insert(out.end(), base.begin() + static_cast<std::ptrdiff_t>(at), base.end());
    return out;
}

WavFile diag_wav(std::span<const std::vector<double>> channels) {
    WavFile file;
    file.sample_rate = kDiagRate;
    file.channels = static_cast<std::uint32_t>(channels.size());
    file.format = kWavFormatFloat64;
    file.frames = channels.empty() ? 0 : channels[0].size();
    file.samples = signal_interleave(channels);
    return file;
}

WavFile diag_mono(std::span<const double> samples) {
    const std::vector<std::vector<double>> channels{{samples.begin(), samples.end()}};
    return diag_wav(channels);
}

WavFile diag_stereo(std::span<const double> left, std::span<const double> right) {
    const std::vector<std::vector<double>> channels{{left.begin(), left.end()},
                                                    {right.begin(), right.end()}};
    return diag_wav(channels);
}

DiagRun diag_run(const WavFile& ref, const WavFile& dut) {
    DiagRun run;
    run.alignment =
        align_channels(ref, dut, kDiagMaxLag, kDiagTolerance, kDiagThreshold, kDiagSilenceDb);
    if (run.alignment.aligned) return run;
    run.diagnosis = diagnose_alignment(ref, dut, run.alignment, kDiagMaxLag, kDiagThreshold);
    run.text = explain_alignment_failure(run.alignment, run.diagnosis, ref.sample_rate, kDiagMaxLag,
                                         kDiagTolerance, kDiagThreshold);
    return run;
}

std::string diag_format(const char* format, ...) {
    char text[512];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    return text;
}
