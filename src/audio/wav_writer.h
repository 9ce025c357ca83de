// Writing interleaved double samples (full scale 1.0) as a RIFF/WAVE file in one of the five
// sample formats. Every entry point returns false on any failure; a null path, a rate or channel
// count of 0, an unknown format code or a sample span shorter than frames * channels fails before
// any file is created. The file is written beside the target and put in place only when
// complete: a failure while writing leaves any earlier file at the path untouched and no partial
// file.
#pragma once

#include "audio/file_replacement.h"

#include <cstddef>
#include <cstdint>
#include <span>

// Plain 44-byte header for integer formats, plain 58-byte float header (with fact chunk) for
// float formats.
bool wav_write(const char* path, std::uint32_t rate, std::uint32_t channels, std::uint32_t format,
               std::span<const double> samples, std::size_t frames);

// As wav_write, into a file the caller opened (for example as one of an output set) and puts in
// place itself.
bool wav_write_into(FileReplacement& file, std::uint32_t rate, std::uint32_t channels,
                    std::uint32_t format, std::span<const double> samples, std::size_t frames);

// As wav_write, followed by extra chunk bytes (for example a WavFile's extra_chunks). The span
// carries both the bytes and their length, so a length without bytes cannot be passed. Integer
// formats write the bytes verbatim; float formats leave out "fact" chunks and write the rest.
bool wav_write_with_extra(const char* path, std::uint32_t rate, std::uint32_t channels,
                          std::uint32_t format, std::span<const double> samples, std::size_t frames,
                          std::span<const std::uint8_t> extra);

// As wav_write with the extensible header (68 bytes integer, 80 bytes float) and a channel mask.
bool wav_write_extensible(const char* path, std::uint32_t rate, std::uint32_t channels,
                          std::uint32_t format, std::span<const double> samples, std::size_t frames,
                          std::uint32_t channel_mask);

// The float writer behind the three entry points above, for formats 288 and 320 only.
bool wav_write_float(const char* path, std::uint32_t rate, std::uint32_t channels,
                     std::uint32_t format, bool extensible, std::uint32_t channel_mask,
                     std::span<const double> samples, std::size_t frames,
                     std::span<const std::uint8_t> extra);
