// In-memory files and the default levels for the impulse template tests. The files run at
// 1000 Hz, so the 5 ms guard is 5 samples and every template position can be written out.
#pragma once

#include "audio/wav_file.h"
#include "checks/impulse_template.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

inline constexpr std::uint32_t kImpulseRate = 1000;
inline constexpr std::size_t kImpulseGuard = 5;
inline constexpr std::size_t kImpulseFrame = 8192;

// The default levels as linear values: -30 dBFS floor, -10 dBFS peak level.
inline const double kImpulseFloor = std::pow(10.0, -30.0 / 20.0);
inline const double kImpulsePeak = std::pow(10.0, -10.0 / 20.0);

// The most negative 16-bit code read back: -32768 / 32767.
inline constexpr double kMostNegative16 = -32768.0 / 32767.0;

// A 64-bit float file of one or two channels of equal length at kImpulseRate.
WavFile impulse_mono(const std::vector<double>& samples);
WavFile impulse_stereo(const std::vector<double>& left, const std::vector<double>& right);

// `frames` zeros with `value` written at each of `positions`.
std::vector<double> impulse_clicks(std::size_t frames, const std::vector<std::size_t>& positions,
                                   double value);

// The check with the default levels and the given frame size.
ImpulseTemplateResult impulse_run(const WavFile& ref, const WavFile& dut, std::int64_t offset = 0,
                                  std::size_t frame_size = kImpulseFrame);
