// Reading a RIFF/WAVE file whole into a WavFile: 16/24/32-bit integer PCM or 32/64-bit IEEE
// float, plain or extensible fmt chunk, every other chunk kept as raw bytes.
#pragma once

#include "audio/wav_file.h"

#include <string>

// Reads the file at `path` into `out`. On failure returns false and leaves `out` zeroed; the reason
// is then available from wav_error_text(). Nothing is printed.
bool wav_read(const char* path, WavFile& out);

// The reason for the most recent refusal: "not a regular file" for a directory, FIFO, socket or
// device (refused without reading or waiting), the NaN/infinity message if the last read stopped
// there, otherwise the generic "not a supported ..." text.
const char* wav_error_text();

// "file not found or not readable" when `path` cannot be opened for reading, "not a regular file"
// when it names something else than a file, otherwise wav_error_text().
std::string wav_failure_reason(const char* path);

// Releases the sample and extra-chunk memory and zeroes every field.
void wav_free(WavFile& file);
