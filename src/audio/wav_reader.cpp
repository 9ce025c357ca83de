#include "audio/wav_reader.h"

#include "audio/wav_chunk_walk.h"
#include "audio/wav_decode.h"
#include "audio/wav_stdio.h"

#include <algorithm>
#include <fcntl.h>
#include <optional>
#include <span>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::size_t kErrorCapacity = 160;
char g_error_text[kErrorCapacity] = {};

constexpr const char* kGenericError =
    "not a supported 16/24/32-bit integer or 32/64-bit float PCM WAV file";
constexpr const char* kNotRegularError = "not a regular file";

enum class OpenOutcome { opened, unopenable, not_regular };

bool is_regular(const struct stat& info) {
    return S_ISREG(info.st_mode);
}

// Opens `path` for reading only when it is a regular file. A FIFO, socket, device or directory is
// refused by its type before it is opened, and the open itself does not wait, so no reader ever
// blocks on a FIFO without a writer or reads an endless stream.
OpenOutcome open_regular(const char* path, WavFileHandle& handle, std::uint64_t& length) {
    struct stat info {};
    if (::stat(path, &info) == 0 && !is_regular(info)) return OpenOutcome::not_regular;
    const int fd = ::open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (fd < 0) return OpenOutcome::unopenable;
    // The path may have been replaced since it was looked at: the opened file decides.
    if (::fstat(fd, &info) != 0 || !is_regular(info)) {
        ::close(fd);
        return OpenOutcome::not_regular;
    }
    handle.reset(::fdopen(fd, "rb"));
    if (!handle) {
        ::close(fd);
        return OpenOutcome::unopenable;
    }
    length = static_cast<std::uint64_t>(info.st_size);
    return OpenOutcome::opened;
}

// The sample layout that the fmt and data chunks describe once they pass every check.
struct WavShape {
    std::uint32_t format = 0;
    std::size_t frames = 0;
    std::size_t sample_count = 0;
};

std::uint32_t format_code(const WavFmtInfo& fmt) {
    const bool int_ok = !fmt.is_float && (fmt.bits == 16 || fmt.bits == 24 || fmt.bits == 32);
    const bool float_ok = fmt.is_float && (fmt.bits == 32 || fmt.bits == 64);
    if (!int_ok && !float_ok) return 0;
    return fmt.is_float ? 0x100u + fmt.bits : fmt.bits;
}

// Both chunks seen, a supported bit depth, non-zero rate and channels, whole frames only.
bool check_shape(const WavLayout& layout, WavShape& shape) {
    if (!layout.fmt_seen || layout.data_position < 0) return false;
    shape.format = format_code(layout.fmt);
    if (shape.format == 0) return false;
    if (layout.fmt.sample_rate == 0 || layout.fmt.channels == 0) return false;
    const std::size_t frame_bytes = std::size_t{layout.fmt.channels} * (layout.fmt.bits / 8u);
    if (layout.data_size % frame_bytes != 0) return false;
    shape.frames = layout.data_size / frame_bytes;
    shape.sample_count = shape.frames * layout.fmt.channels;
    return true;
}

// Raw bytes read and converted at a time: the payload never needs a buffer of its own size.
constexpr std::size_t kBlockSamples = std::size_t{1} << 18;

void note_bad_sample(std::size_t index, const WavLayout& layout) {
    const std::size_t channels = layout.fmt.channels;
    std::snprintf(g_error_text, kErrorCapacity,
                  "contains NaN or infinite samples, first at frame %zu, channel %zu",
                  index / channels, index % channels);
}

// Reads the data payload a block at a time and converts each block into its place in `samples`.
// A payload running past the end of the file could only end in a short read, so it is refused
// before anything is allocated. The whole payload is converted even after a NaN or infinity; the
// first one's place then goes into the error text and the read fails.
bool read_samples(std::FILE* file, std::uint64_t file_length, const WavLayout& layout,
                  const WavShape& shape, std::vector<double>& samples) {
    const auto end = static_cast<std::uint64_t>(layout.data_position) + layout.data_size;
    if (end > file_length || fseeko(file, layout.data_position, SEEK_SET) != 0) return false;
    const std::size_t width = wav_format_bytes(shape.format);
    std::vector<std::uint8_t> raw;
    if (!wav_try_resize(raw, std::min(shape.sample_count, kBlockSamples) * width) ||
        !wav_try_resize(samples, shape.sample_count))
        return false;
    std::optional<std::size_t> first_bad;
    for (std::size_t done = 0; done < shape.sample_count;) {
        const std::size_t count = std::min(kBlockSamples, shape.sample_count - done);
        const std::span<std::uint8_t> bytes(raw.data(), count * width);
        if (!wav_read_exact(file, bytes.data(), bytes.size())) return false;
        const std::optional<std::size_t> bad = wav_decode_samples(
            bytes, shape.format, std::span<double>(samples).subspan(done, count));
        if (bad && !first_bad) first_bad = done + *bad;
        done += count;
    }
    if (first_bad) note_bad_sample(*first_bad, layout);
    return !first_bad;
}

void fill_record(WavLayout& layout, const WavShape& shape, std::vector<double>& samples,
                 WavFile& out) {
    out.sample_rate = layout.fmt.sample_rate;
    out.channels = layout.fmt.channels;
    out.format = shape.format;
    out.extensible = layout.fmt.extensible;
    out.channel_mask = layout.fmt.channel_mask;
    out.samples = std::move(samples);
    out.frames = shape.frames;
    out.extra_chunks = std::move(layout.extra_chunks);
}

} // namespace

bool wav_read(const char* path, WavFile& out) {
    // The error text is emptied and the record zeroed on every call, a null path included.
    g_error_text[0] = '\0';
    out = WavFile{};
    if (path == nullptr) return false;
    WavFileHandle file;
    std::uint64_t file_length = 0;
    const OpenOutcome opened = open_regular(path, file, file_length);
    if (opened == OpenOutcome::not_regular) {
        std::snprintf(g_error_text, kErrorCapacity, "%s", kNotRegularError);
    }
    if (opened != OpenOutcome::opened) return false;
    WavLayout layout;
    WavShape shape;
    if (!wav_walk_chunks(file.get(), file_length, layout) || !check_shape(layout, shape)) {
        return false;
    }
    std::vector<double> samples;
    if (!read_samples(file.get(), file_length, layout, shape, samples)) return false;
    file.reset();
    fill_record(layout, shape, samples, out);
    return true;
}

const char* wav_error_text() {
    return g_error_text[0] != '\0' ? g_error_text : kGenericError;
}

std::string wav_failure_reason(const char* path) {
    WavFileHandle file;
    std::uint64_t length = 0;
    const OpenOutcome opened =
        path != nullptr ? open_regular(path, file, length) : OpenOutcome::unopenable;
    if (opened == OpenOutcome::unopenable) return "file not found or not readable";
    if (opened == OpenOutcome::not_regular) return kNotRegularError;
    return wav_error_text();
}

void wav_free(WavFile& file) {
    file = WavFile{};
}
