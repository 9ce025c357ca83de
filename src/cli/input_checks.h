// Reading an input WAV file and checking that its format is one sonalyx accepts. Each failure is
// raised through the comparison-error reporter (printed and added to `error_text`).
#pragma once

#include "audio/audio.h"

#include <string>

// "failed to read <option> '<path>' (<reason>)" on failure, where an unopenable file reads as
// "file not found or not readable".
bool read_input(const char* path, const char* option, WavFile& file, std::string& error_text);
// The single input of trim and plot, read and checked before any work: on a failed read prints
// "error: failed to read --input '<path>' (<reason>)" with the reader's own reason, so an
// unopenable file reads as the generic refusal; then the sample rate and the channel count are
// checked as for analyze's inputs (both told at once). Nothing goes to an error text: these tools
// write no ERROR report.
bool read_tool_input(const char* path, WavFile& file);
// A sample rate in [22050, 192000] Hz.
bool rate_supported(const WavFile& file, const char* option, std::string& error_text);
// One or two channels.
bool channels_supported(const WavFile& file, const char* option, std::string& error_text);
