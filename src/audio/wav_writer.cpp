#include "audio/wav_writer.h"

#include "audio/file_replacement.h"
#include "audio/wav_encode.h"
#include "audio/wav_extra_pieces.h"
#include "audio/wav_file.h"
#include "audio/wav_header.h"

#include <algorithm>
#include <array>
#include <limits>

namespace {

// Samples are encoded into a block of this size and written block by block.
constexpr std::size_t kBlockBytes = 32768;

struct WriteRequest {
    const char* path = nullptr;
    FileReplacement* into = nullptr; // a file the caller opened and puts in place; else own file
    WavHeaderFields fields;
    std::span<const double> samples; // exactly frames * channels values
};

// The checks made before any file is created; fills the request on success.
bool prepare(const char* path, std::uint32_t rate, std::uint32_t channels, std::uint32_t format,
             std::span<const double> samples, std::size_t frames, WriteRequest& request) {
    if (path == nullptr || rate == 0 || channels == 0 || !wav_format_is_known(format)) {
        return false;
    }
    if (frames > std::numeric_limits<std::size_t>::max() / channels) return false;
    const std::size_t count = frames * channels;
    if (samples.size() < count) return false;
    request.path = path;
    request.fields.sample_rate = rate;
    request.fields.channels = channels;
    request.fields.format = format;
    request.fields.frames = frames;
    request.samples = samples.first(count);
    return true;
}

bool write_samples(FileReplacement& file, std::span<const double> samples, std::uint32_t format) {
    std::array<std::uint8_t, kBlockBytes> block;
    const std::size_t width = wav_format_bytes(format);
    const std::size_t per_block = kBlockBytes / width;
    for (std::size_t start = 0; start < samples.size(); start += per_block) {
        const auto part = samples.subspan(start, std::min(per_block, samples.size() - start));
        const auto bytes = std::span<std::uint8_t>(block).first(part.size() * width);
        wav_encode_samples(part, format, bytes);
        if (!replacement_write(file, bytes)) return false;
    }
    return true;
}

bool write_kept_pieces(FileReplacement& file, std::span<const std::uint8_t> extra) {
    while (!extra.empty()) {
        const std::span<const std::uint8_t> piece = wav_front_piece(extra);
        if (!wav_piece_is_fact(piece) && !replacement_write(file, piece)) return false;
        extra = extra.subspan(piece.size());
    }
    return true;
}

// Writes the header in one write, then the samples, then the chunks that follow them
// (`write_tail`): into the caller's file, or into a new file that replaces `request.path` only
// once it is complete.
template <typename WriteTail>
bool write_file(const WriteRequest& request, const WavHeader& header, WriteTail write_tail) {
    const auto write_all = [&](FileReplacement& file) {
        return replacement_write(file,
                                 std::span<const std::uint8_t>(header.bytes).first(header.size)) &&
               write_samples(file, request.samples, request.fields.format) && write_tail(file);
    };
    if (request.into != nullptr) return write_all(*request.into);
    FileReplacement file;
    return replacement_open(request.path, file) && write_all(file) && replacement_commit(file);
}

bool write_int(WriteRequest& request, std::span<const std::uint8_t> extra) {
    request.fields.extra_bytes = extra.size();
    WavHeader header;
    wav_build_int_header(request.fields, header);
    return write_file(request, header,
                      [extra](FileReplacement& file) { return replacement_write(file, extra); });
}

bool write_float(WriteRequest& request, bool extensible, std::uint32_t channel_mask,
                 std::span<const std::uint8_t> extra) {
    request.fields.extensible = extensible;
    request.fields.channel_mask = channel_mask;
    request.fields.extra_bytes = wav_kept_pieces_length(extra);
    WavHeader header;
    wav_build_float_header(request.fields, header);
    return write_file(request, header,
                      [extra](FileReplacement& file) { return write_kept_pieces(file, extra); });
}

bool write_plain(WriteRequest& request, std::span<const std::uint8_t> extra) {
    return wav_format_is_float(request.fields.format) ? write_float(request, false, 0, extra)
                                                      : write_int(request, extra);
}

} // namespace

bool wav_write_float(const char* path, std::uint32_t rate, std::uint32_t channels,
                     std::uint32_t format, bool extensible, std::uint32_t channel_mask,
                     std::span<const double> samples, std::size_t frames,
                     std::span<const std::uint8_t> extra) {
    // The float writer refuses the integer codes like any other code it cannot write.
    WriteRequest request;
    return wav_format_is_float(format) &&
           prepare(path, rate, channels, format, samples, frames, request) &&
           write_float(request, extensible, channel_mask, extra);
}

bool wav_write_with_extra(const char* path, std::uint32_t rate, std::uint32_t channels,
                          std::uint32_t format, std::span<const double> samples, std::size_t frames,
                          std::span<const std::uint8_t> extra) {
    WriteRequest request;
    return prepare(path, rate, channels, format, samples, frames, request) &&
           write_plain(request, extra);
}

bool wav_write_into(FileReplacement& file, std::uint32_t rate, std::uint32_t channels,
                    std::uint32_t format, std::span<const double> samples, std::size_t frames) {
    WriteRequest request;
    request.into = &file;
    return prepare(file.target.c_str(), rate, channels, format, samples, frames, request) &&
           write_plain(request, {});
}

bool wav_write(const char* path, std::uint32_t rate, std::uint32_t channels, std::uint32_t format,
               std::span<const double> samples, std::size_t frames) {
    return wav_write_with_extra(path, rate, channels, format, samples, frames, {});
}

bool wav_write_extensible(const char* path, std::uint32_t rate, std::uint32_t channels,
                          std::uint32_t format, std::span<const double> samples, std::size_t frames,
                          std::uint32_t channel_mask) {
    if (wav_format_is_float(format)) {
        return wav_write_float(path, rate, channels, format, true, channel_mask, samples, frames,
                               {});
    }
    WriteRequest request;
    if (!prepare(path, rate, channels, format, samples, frames, request)) return false;
    request.fields.extensible = true;
    request.fields.channel_mask = channel_mask;
    return write_int(request, {});
}
