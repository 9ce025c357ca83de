// In-memory files and the default settings for the Time Domain scan tests.
#pragma once

#include "audio/wav_file.h"
#include "checks/time_domain.h"

#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

namespace time_domain_test {

// The default settings: floor -80 dBFS, peak level -60 dBFS (10 %), low level -70 dBFS (50 %),
// signal tier 50 %.
inline constexpr double kFloorDb = -80.0;
inline constexpr double kPeakDb = -60.0;
inline constexpr double kPeakTolerance = 10.0;
inline constexpr double kLowDb = -70.0;
inline constexpr double kLowTolerance = 50.0;
inline constexpr double kSignalTolerance = 50.0;

// The levels as the scan converts them.
inline double floor_level() {
    return std::pow(10.0, kFloorDb / 20.0);
}
inline double peak_level() {
    return std::pow(10.0, kPeakDb / 20.0);
}
inline double low_level() {
    return std::pow(10.0, kLowDb / 20.0);
}

// A 48 kHz 64-bit float file holding `samples` interleaved over `channels`.
inline WavFile make_file(std::vector<double> samples, std::uint32_t channels = 1) {
    WavFile file;
    file.sample_rate = 48000;
    file.channels = channels;
    file.format = kWavFormatFloat64;
    file.frames = channels == 0 ? 0 : samples.size() / channels;
    file.samples = std::move(samples);
    return file;
}

inline TimeDomainResult scan_defaults(const WavFile& ref, const WavFile& dut,
                                      std::int64_t offset = 0) {
    return time_domain_scan(aligned_pair(ref, dut, offset), kFloorDb, kPeakDb, kPeakTolerance,
                            kLowDb, kLowTolerance, kSignalTolerance);
}

// The scan of one mono pair with the default settings.
inline TimeDomainChannel scan_mono(std::vector<double> ref, std::vector<double> dut) {
    return scan_defaults(make_file(std::move(ref)), make_file(std::move(dut))).channel[0];
}

} // namespace time_domain_test
