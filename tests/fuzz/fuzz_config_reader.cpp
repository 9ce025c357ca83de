// libFuzzer harness for the settings-file reader: the input bytes are written to a scratch file
// and loaded both as a --config file and as a defaults file; whatever loads then goes through the
// default profiles, resolution (with command-line flags and a sample rate taken from the input)
// and validation.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <unistd.h>

#include "config/config.h"

namespace {

// One input written to a fresh file in /tmp; the file is removed again with this record.
struct ScratchFile {
    std::string path;
    ScratchFile() = default;
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;
    ~ScratchFile() {
        if (!path.empty()) std::remove(path.c_str());
    }
};

bool write_scratch_file(const std::uint8_t* data, std::size_t size, ScratchFile& scratch) {
    char name[] = "/tmp/sonalyx_fuzz_config_XXXXXX";
    const int fd = ::mkstemp(name);
    if (fd < 0) return false;
    scratch.path = name;
    std::FILE* file = ::fdopen(fd, "wb");
    if (file == nullptr) {
        ::close(fd);
        return false;
    }
    const bool written = std::fwrite(data, 1, size, file) == size;
    return std::fclose(file) == 0 && written;
}

// Flags and --snapshots from the input's last byte, so that every path of resolution is reached.
CommandLineSettings flags_from(const std::uint8_t* data, std::size_t size) {
    CommandLineSettings flags;
    const unsigned bits = size > 0 ? data[size - 1] : 0u;
    flags.ampsweep = (bits & 1u) != 0;
    flags.freqsweep = (bits & 3u) == 2u;
    flags.deepscan = flags.impulse = flags.bitaccuracy = (bits & 4u) != 0;
    flags.bitexact = flags.loudness = (bits & 8u) != 0;
    flags.no_distortion = flags.levelfidelity_ref_only = flags.artifact_ref_only =
        (bits & 16u) != 0;
    if ((bits & 32u) != 0) flags.snapshots = static_cast<long>(bits) - 100;
    return flags;
}

// Every failure message is one complete "error: ...\n" line.
void check_message(const std::string& message) {
    if (message.rfind("error: ", 0) != 0 || message.back() != '\n') __builtin_trap();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ScratchFile scratch;
    if (!write_scratch_file(data, size, scratch)) return 0;
    SettingsFile config_file;
    SettingsFile defaults;
    std::string message;
    if (load_override_file(scratch.path, config_file) &&
        !apply_default_profile(config_file, "--config", message)) {
        check_message(message);
    }
    if (load_defaults_file(scratch.path, defaults) &&
        !apply_default_profile(defaults, "sonalyx-defaults.cfg", message)) {
        check_message(message);
    }
    constexpr std::uint32_t kRates[] = {22050, 44100, 48000, 88200, 96000, 192000};
    const std::uint32_t rate = kRates[size % 6];
    AnalysisConfig config;
    resolve_analysis_config(config_file, defaults, flags_from(data, size), rate, size * 37, config);
    if (config.spectral_fidelity.fft_size.value == 0) __builtin_trap();
    if (!validate_analysis_config(config, rate, message)) check_message(message);
    configuration_rows(config);
    AlignmentConfig alignment;
    resolve_alignment_config(config_file, defaults, alignment);
    alignment_max_search_samples(alignment, rate);
    return 0;
}
