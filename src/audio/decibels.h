// Conversions between decibels and linear magnitudes, shared by every check.
#pragma once

#include <cmath>

// 10^(dB/20): a level in dB as a linear magnitude (full scale 1.0).
inline double db_to_linear(double db) {
    return std::pow(10.0, db / 20.0);
}

// Reported in place of minus infinity for a magnitude of 0.
inline constexpr double kSilenceDb = -200.0;

// 20·log10(magnitude), or kSilenceDb when the magnitude is not above 0.
inline double magnitude_db(double magnitude) {
    return magnitude > 0.0 ? 20.0 * std::log10(magnitude) : kSilenceDb;
}
