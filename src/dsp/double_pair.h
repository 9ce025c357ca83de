// Two doubles side by side in one 128-bit vector, for loops that run two independent sums at
// once. Every operation acts on each half on its own exactly as the same operation on one double
// would (no fused or reordered arithmetic), so each half ends with the very bits the scalar loop
// gives.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

typedef double DoublePair __attribute__((vector_size(16)));
typedef std::int64_t DoublePairMask __attribute__((vector_size(16)));

// The two doubles at p (any alignment).
inline DoublePair load_pair(const double* p) {
    DoublePair v;
    std::memcpy(&v, p, sizeof v);
    return v;
}

inline void store_pair(double* p, DoublePair v) {
    std::memcpy(p, &v, sizeof v);
}

// Loops written once for one channel (a double per frame) and for two (a pair per frame) load and
// store their frames through these.
template <class Lane> constexpr std::size_t kLaneChannels = sizeof(Lane) / sizeof(double);

template <class Lane> Lane load_lane(const double* p);

template <> inline double load_lane<double>(const double* p) {
    return *p;
}

template <> inline DoublePair load_lane<DoublePair>(const double* p) {
    return load_pair(p);
}

inline void store_lane(double* p, double v) {
    *p = v;
}

inline void store_lane(double* p, DoublePair v) {
    store_pair(p, v);
}

// |v| in each half: the sign bit cleared, as std::abs does.
inline DoublePair abs_pair(DoublePair v) {
    const DoublePairMask magnitude = {INT64_MAX, INT64_MAX};
    return std::bit_cast<DoublePair>(std::bit_cast<DoublePairMask>(v) & magnitude);
}

// In each half, `v` where peak < v, else `peak`: std::max(peak, v), which keeps the peak when v
// is NaN.
inline DoublePair max_pair(DoublePair peak, DoublePair v) {
    return peak < v ? v : peak;
}
