#include "analyze_fixture.h"

#include "audio/wav_writer.h"
#include "support/signal_gen.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

std::vector<double> test_noise(std::uint64_t seed, std::size_t frames) {
    std::vector<double> noise = signal_uniform(seed, frames, -0.45, 0.45);
    for (double& x : noise)
        x += x < 0.0 ? -0.05 : 0.05;
    return noise;
}

std::vector<double> delayed(const std::vector<double>& signal, std::size_t delay) {
    std::vector<double> out(signal.size(), 0.0);
    for (std::size_t i = delay; i < signal.size(); ++i)
        out[i] = signal[i - delay];
    return out;
}

std::vector<double> interleaved(const std::vector<std::vector<double>>& channels) {
    return signal_interleave(channels);
}

void write_wav(const std::string& path, std::uint32_t rate, std::uint32_t channels,
               const std::vector<double>& samples, std::uint32_t format) {
    ASSERT_TRUE(wav_write(path.c_str(), rate, channels, format, samples, samples.size() / channels))
        << path;
}

bool has(const std::string& text, const std::string& piece) {
    return text.find(piece) != std::string::npos;
}

double json_number(const std::string& json, const std::string& key) {
    const std::string head = "\"" + key + "\": ";
    const std::size_t at = json.find(head);
    if (at == std::string::npos) return std::nan("");
    return std::strtod(json.c_str() + at + head.size(), nullptr);
}
