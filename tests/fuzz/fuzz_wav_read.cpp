// libFuzzer harness for the WAV reader: each input is written to one temporary file and read
// back; a successful read must describe a consistent, finite record.
#include "audio/wav_reader.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace {

// The temporary file, created once per process and removed at exit.
std::string g_input_path;

void remove_input() {
    unlink(g_input_path.c_str());
}

const std::string& input_path() {
    if (g_input_path.empty()) {
        char pattern[] = "/tmp/sonalyx-fuzz-wav-XXXXXX";
        const int fd = mkstemp(pattern);
        if (fd < 0) std::abort();
        close(fd);
        g_input_path = pattern;
        std::atexit(remove_input);
    }
    return g_input_path;
}

bool write_input(const std::string& path, const std::uint8_t* data, std::size_t size) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) return false;
    const bool written = size == 0 || std::fwrite(data, 1, size, file) == size;
    return std::fclose(file) == 0 && written;
}

void check_record(const WavFile& file) {
    if (file.sample_rate == 0 || file.channels == 0) std::abort();
    if (file.samples.size() != file.frames * file.channels) std::abort();
    if (!wav_format_is_known(file.format)) std::abort();
    for (const double sample : file.samples) {
        if (!std::isfinite(sample)) std::abort();
    }
}

void check_zeroed(const WavFile& file) {
    if (file.sample_rate != 0 || file.channels != 0 || file.format != 0 || file.extensible ||
        file.channel_mask != 0 || !file.samples.empty() || file.frames != 0 ||
        !file.extra_chunks.empty()) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string& path = input_path();
    if (!write_input(path, data, size)) std::abort();
    WavFile file;
    if (wav_read(path.c_str(), file)) {
        check_record(file);
    } else {
        check_zeroed(file);
    }
    wav_free(file);
    check_zeroed(file);
    return 0;
}
