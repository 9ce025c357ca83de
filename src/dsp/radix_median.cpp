#include "dsp/radix_median.h"

#include "dsp/nothrow_array.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

namespace {

// Bits of the key told apart by one counting pass; the counts fit the first-level cache.
constexpr unsigned kDigitBits = 11;
constexpr std::size_t kBins = std::size_t{1} << kDigitBits;
// A range holding at most this many keys is collected and selected among directly.
constexpr std::size_t kCollectLimit = std::size_t{1} << 16;
constexpr std::uint64_t kSignBit = std::uint64_t{1} << 63;

using Histogram = std::array<std::size_t, kBins>;

// An unsigned key that sorts as the double does: a negative value has every bit flipped, any
// other value only its sign bit. -0.0 sorts just below +0.0.
std::uint64_t order_key(double x) {
    const auto bits = std::bit_cast<std::uint64_t>(x);
    return (bits & kSignBit) != 0 ? ~bits : bits | kSignBit;
}

double key_value(std::uint64_t key) {
    return std::bit_cast<double>((key & kSignBit) != 0 ? key & ~kSignBit : ~key);
}

// The keys of the list: of the values, or of their distances from a centre.
struct ValueKeys {
    std::span<const double> values;
    std::uint64_t operator()(std::size_t i) const { return order_key(values[i]); }
};

struct DeviationKeys {
    std::span<const double> values;
    double centre = 0.0;
    std::uint64_t operator()(std::size_t i) const {
        return order_key(std::fabs(values[i] - centre));
    }
};

// The keys still in play: those whose top `known` bits equal `prefix`, `count` of them; `below`
// keys of the list are smaller than all of them.
struct KeyRange {
    std::uint64_t prefix = 0;
    unsigned known = 0;
    std::size_t below = 0;
    std::size_t count = 0;
};

bool in_range(const KeyRange& r, std::uint64_t key) {
    return r.known == 0 || key >> (64 - r.known) == r.prefix;
}

// The next digit of the keys in range: how many bits, and where they sit.
struct Digit {
    unsigned bits = 0;
    unsigned shift = 0;
    std::uint64_t mask = 0;
};

Digit next_digit(const KeyRange& r) {
    const unsigned bits = std::min(kDigitBits, 64 - r.known);
    return {bits, 64 - r.known - bits, (std::uint64_t{1} << bits) - 1};
}

// The values a full ascending sort puts at the two middle ranks (the same rank twice for an odd
// count).
struct MiddlePair {
    double low = 0.0;
    double high = 0.0;
};

// Counts of the next digit, added up from four tallies every block (before any could overflow).
// On the first pass every key counts and the tallies take the keys in turn, so that runs of
// equal digits (common where the values crowd together) do not wait on each other's increments;
// on later passes few keys are in range and one tally serves.
using Tally = std::array<std::uint32_t, kBins>;
constexpr std::size_t kCountBlock = std::size_t{1} << 30;

template <class Keys>
void count_every_key(const Keys& keys, std::size_t from, std::size_t to, const Digit& d,
                     std::array<Tally, 4>& t) {
    std::size_t i = from;
    for (; i + 4 <= to; i += 4) {
        ++t[0][(keys(i) >> d.shift) & d.mask];
        ++t[1][(keys(i + 1) >> d.shift) & d.mask];
        ++t[2][(keys(i + 2) >> d.shift) & d.mask];
        ++t[3][(keys(i + 3) >> d.shift) & d.mask];
    }
    for (; i < to; ++i)
        ++t[0][(keys(i) >> d.shift) & d.mask];
}

template <class Keys>
void count_keys_in_range(const Keys& keys, std::size_t from, std::size_t to, const KeyRange& r,
                         const Digit& d, Tally& t) {
    for (std::size_t i = from; i < to; ++i) {
        const std::uint64_t key = keys(i);
        if (key >> (64 - r.known) == r.prefix) ++t[(key >> d.shift) & d.mask];
    }
}

template <class Keys>
void count_digits(const Keys& keys, std::size_t n, const KeyRange& r, Histogram& counts) {
    const Digit d = next_digit(r);
    counts.fill(0);
    std::array<Tally, 4> t;
    for (std::size_t from = 0; from < n; from += kCountBlock) {
        const std::size_t to = std::min(n, from + kCountBlock);
        for (Tally& tally : t)
            tally.fill(0);
        if (r.known == 0) {
            count_every_key(keys, from, to, d, t);
        } else {
            count_keys_in_range(keys, from, to, r, d, t[0]);
        }
        for (const Tally& tally : t) {
            for (std::size_t b = 0; b < kBins; ++b)
                counts[b] += tally[b];
        }
    }
}

// The digit of the key at `rank` among the keys in range, and how many keys in range come before
// that digit's keys.
struct RankedDigit {
    std::size_t digit = 0;
    std::size_t before = 0;
};

RankedDigit digit_of_rank(const Histogram& counts, std::size_t rank) {
    RankedDigit out;
    while (out.before + counts[out.digit] <= rank) {
        out.before += counts[out.digit];
        ++out.digit;
    }
    return out;
}

// The two ranks fell into different digits (with none between): the lower rank holds the largest
// key of its digit, the upper rank the smallest of its own.
template <class Keys>
MiddlePair split_pair(const Keys& keys, std::size_t n, const KeyRange& r, std::size_t low_digit,
                      std::size_t high_digit) {
    const Digit d = next_digit(r);
    std::uint64_t largest = 0;
    std::uint64_t smallest = ~std::uint64_t{0};
    for (std::size_t i = 0; i < n; ++i) {
        const std::uint64_t key = keys(i);
        if (!in_range(r, key)) continue;
        const std::uint64_t digit = (key >> d.shift) & d.mask;
        if (digit == low_digit) largest = std::max(largest, key);
        if (digit == high_digit) smallest = std::min(smallest, key);
    }
    return {key_value(largest), key_value(smallest)};
}

// Collects the keys in range and selects the two ranks among them as median_of does; false when
// the buffer cannot be had.
template <class Keys>
bool collect_pair(const Keys& keys, std::size_t n, const KeyRange& r, std::size_t low_rank,
                  std::size_t high_rank, MiddlePair& out) {
    const auto buffer = try_allocate_doubles(r.count);
    if (!buffer) return false;
    double* c = buffer.get();
    std::size_t held = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const std::uint64_t key = keys(i);
        if (in_range(r, key)) c[held++] = key_value(key);
    }
    const std::size_t high = high_rank - r.below;
    std::nth_element(c, c + high, c + held);
    out.high = c[high];
    out.low = low_rank == high_rank ? out.high : *std::max_element(c, c + high);
    return true;
}

// Narrows the range a digit at a time while both ranks share one digit.
template <class Keys>
MiddlePair middle_pair(const Keys& keys, std::size_t n, std::size_t low_rank,
                       std::size_t high_rank) {
    Histogram counts{};
    KeyRange r{0, 0, 0, n};
    MiddlePair out;
    while (r.known < 64) {
        if (r.count <= kCollectLimit && collect_pair(keys, n, r, low_rank, high_rank, out))
            return out;
        count_digits(keys, n, r, counts);
        const RankedDigit low = digit_of_rank(counts, low_rank - r.below);
        const RankedDigit high = digit_of_rank(counts, high_rank - r.below);
        if (low.digit != high.digit) return split_pair(keys, n, r, low.digit, high.digit);
        const Digit d = next_digit(r);
        r = {(r.prefix << d.bits) | low.digit, r.known + d.bits, r.below + low.before,
             counts[low.digit]};
    }
    // Every key in range is the same value.
    return {key_value(r.prefix), key_value(r.prefix)};
}

template <class Keys> double median_by_keys(const Keys& keys, std::size_t n) {
    if (n == 0) return 0.0;
    const std::size_t high = n / 2;
    const bool odd = n % 2 == 1;
    const MiddlePair m = middle_pair(keys, n, odd ? high : high - 1, high);
    return odd ? m.high : (m.low + m.high) / 2.0;
}

} // namespace

double radix_median(std::span<const double> values) {
    return median_by_keys(ValueKeys{values}, values.size());
}

double radix_median_of_deviations(std::span<const double> values, double centre) {
    return median_by_keys(DeviationKeys{values, centre}, values.size());
}
