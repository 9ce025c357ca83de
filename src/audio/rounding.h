// Rounding of doubles to whole numbers: to nearest, halves away from zero, everywhere a double
// becomes an integer code.
#pragma once

#include <cmath>

inline double round_half_away_from_zero(double x) {
    return std::round(x);
}
