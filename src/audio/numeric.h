// The numeric conversions every analysis shares: rounding a double to a whole number, and
// decibels to and from linear magnitudes and powers.
#pragma once

#include <cmath>

// To nearest, halves away from zero: everywhere a double becomes an integer code.
inline double round_half_away_from_zero(double x) {
    return std::round(x);
}

// 10^(dB/20): a level in dB as a linear magnitude (full scale 1.0).
inline double db_to_linear(double db) {
    return std::pow(10.0, db / 20.0);
}

// 10^(dB/10): a level in dB as a power.
inline double db_to_power(double db) {
    return std::pow(10.0, db / 10.0);
}

// Reported in place of minus infinity for a magnitude of 0.
inline constexpr double kSilenceDb = -200.0;

// 20·log10(ratio) of a ratio of magnitudes, taken as it is.
inline double amplitude_ratio_db(double ratio) {
    return 20.0 * std::log10(ratio);
}

// 10·log10(power) of a power or a ratio of powers, taken as it is.
inline double power_db(double power) {
    return 10.0 * std::log10(power);
}

// 20·log10(magnitude), or kSilenceDb when the magnitude is not above 0.
inline double magnitude_db(double magnitude) {
    return magnitude > 0.0 ? amplitude_ratio_db(magnitude) : kSilenceDb;
}
