// Hann-windowed spectrum frames of one channel of a decoded WAV file, in dB or linear magnitude.
#pragma once

#include "audio/audio.h"

#include <cstddef>
#include <vector>

// Reads n frames of `channel` from start_frame on (the caller guarantees
// start_frame + n <= file.frames; nothing is bounds-checked), weights sample i by
// 0.5 * (1 - cos(2 pi (i + 1) / (n - 1))), transforms them (n a power of two) and writes n / 2
// bins to `out`: bin k stands for k * sample_rate / n Hz and holds m = hypot(re, im) * 4 / n, so a
// sine of peak amplitude A centred on a bin reads about A. For n < 2 nothing is read or written;
// for an n that is not a power of two every bin is written as silent.

// The two windows: the analysis frames' shifted Hann window above, and the plain Hann weight
// 0.5 (1 - cos(2 pi i / n)) of the spectra the pages show.
enum class SpectrumWindow { analysis, display };

// The lowest level the pages show: every displayed level is floored here.
inline constexpr double kDisplayFloorDb = -140.0;

// Writes 20 * log10(m) per bin, or exactly -200.0 for a bin with m not above 0.
void spectrum_db_frame(const WavFile& file, unsigned channel, std::size_t start_frame,
                       std::size_t n, double* out);

// Writes m per bin.
void spectrum_mag_frame(const WavFile& file, unsigned channel, std::size_t start_frame,
                        std::size_t n, double* out);

// The spectrum the pages show of one frame: the display window, the same transform and
// magnitudes, each bin as 20 * log10(m), or kDisplayFloorDb for m below 1e-7 (zero included).
// Empty when the channel or the frame is not in the file or n is not a power of two.
std::vector<double> display_spectrum_db(const WavFile& file, unsigned channel,
                                        std::size_t start_frame, std::size_t n);
