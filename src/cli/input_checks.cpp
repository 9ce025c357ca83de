#include "cli/input_checks.h"

#include "audio/audio.h"
#include "cli/comparison_error.h"
#include "cli/run_stage.h"

#include <cstdint>
#include <cstdio>

namespace {

constexpr std::uint32_t kMinSampleRate = 22050;
constexpr std::uint32_t kMaxSampleRate = 192000;

} // namespace

bool read_input(const char* path, const char* option, WavFile& file, std::string& error_text) {
    set_run_stage("reading %s '%s'", option, path);
    if (wav_read(path, file)) return true;
    report_comparison_error(error_text, "failed to read %s '%s' (%s)", option, path,
                            wav_failure_reason(path).c_str());
    return false;
}

bool read_tool_input(const char* path, WavFile& file) {
    set_run_stage("reading --input '%s'", path);
    if (!wav_read(path, file)) {
        std::fprintf(stderr, "error: failed to read --input '%s' (%s)\n", path, wav_error_text());
        return false;
    }
    std::string error_text;
    const bool rate = rate_supported(file, "--input", error_text);
    return channels_supported(file, "--input", error_text) && rate;
}

bool rate_supported(const WavFile& file, const char* option, std::string& error_text) {
    if (file.sample_rate >= kMinSampleRate && file.sample_rate <= kMaxSampleRate) return true;
    report_comparison_error(error_text,
                            "%s sample rate %u Hz is outside the supported range [%u, %u] Hz",
                            option, file.sample_rate, kMinSampleRate, kMaxSampleRate);
    return false;
}

bool channels_supported(const WavFile& file, const char* option, std::string& error_text) {
    if (file.channels == 1 || file.channels == 2) return true;
    report_comparison_error(error_text,
                            "%s has %u channel(s) -- sonalyx only accepts mono or stereo input",
                            option, file.channels);
    return false;
}
