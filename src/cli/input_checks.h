// Reading an input WAV file and checking that its format is one sonalyx accepts. Each failure is
// raised through the comparison-error reporter (printed and added to `error_text`).
#pragma once

#include "audio/wav_file.h"

#include <string>

// "failed to read <option> '<path>' (<reason>)" on failure.
bool read_input(const char* path, const char* option, WavFile& file, std::string& error_text);
// A sample rate in [22050, 192000] Hz.
bool rate_supported(const WavFile& file, const char* option, std::string& error_text);
// One or two channels.
bool channels_supported(const WavFile& file, const char* option, std::string& error_text);
