#include "dsp/bit_reverse.h"

#include <array>
#include <utility>

namespace {

// Index bits split as [high: kTileBits][middle][low: kTileBits]. A tile is the set of points
// sharing one middle value: kTileSide rows of kTileSide contiguous points (1 KiB), so the tiled
// permutation reads and writes whole rows and only transposes inside a cache-resident buffer.
constexpr unsigned kTileBits = 6;
constexpr std::size_t kTileSide = std::size_t{1} << kTileBits;
constexpr std::size_t kTilePoints = kTileSide * kTileSide;

using Tile = std::array<double, 2 * kTilePoints>;

unsigned bit_count(std::size_t n) {
    unsigned bits = 0;
    while ((std::size_t{1} << bits) < n) {
        ++bits;
    }
    return bits;
}

std::size_t reverse_bits(std::size_t value, unsigned bits) {
    std::size_t reversed = 0;
    for (unsigned b = 0; b < bits; ++b) {
        reversed = (reversed << 1) | ((value >> b) & 1u);
    }
    return reversed;
}

// Swaps each pair (i, reverse(i)) once, stepping the reversed index along with i.
void permute_by_swaps(double* data, std::size_t n) {
    std::size_t j = 0;
    for (std::size_t i = 0; i < n; ++i) {
        if (j > i) {
            std::swap(data[2 * i], data[2 * j]);
            std::swap(data[2 * i + 1], data[2 * j + 1]);
        }
        std::size_t bit = n >> 1;
        while (bit != 0 && (j & bit) != 0) {
            j ^= bit;
            bit >>= 1;
        }
        j |= bit;
    }
}

struct TileLayout {
    unsigned high_shift;                               // position of the high field
    std::array<std::size_t, kTileSide> reversed_field; // kTileBits-bit reversal of each field value
};

// Offset in doubles of tile row `high`.
std::size_t row_offset(const TileLayout& layout, std::size_t middle, std::size_t high) {
    return 2 * ((high << layout.high_shift) | (middle << kTileBits));
}

// Partner tiles lie far apart in memory; asking for the next one early hides its latency.
void prefetch_tile(const double* data, const TileLayout& layout, std::size_t middle) {
    for (std::size_t high = 0; high < kTileSide; ++high) {
        const double* row = data + row_offset(layout, middle, high);
        for (std::size_t d = 0; d < 2 * kTileSide; d += 8) {
            __builtin_prefetch(row + d);
        }
    }
}

void load_tile(const double* data, const TileLayout& layout, std::size_t middle, Tile& tile) {
    for (std::size_t high = 0; high < kTileSide; ++high) {
        const double* row = data + row_offset(layout, middle, high);
        for (std::size_t d = 0; d < 2 * kTileSide; ++d) {
            tile[2 * kTileSide * high + d] = row[d];
        }
    }
}

// Writes tile point (high, low) to (reverse(low), middle, reverse(high)).
void store_tile_reversed(double* data, const TileLayout& layout, std::size_t middle,
                         const Tile& tile) {
    for (std::size_t high = 0; high < kTileSide; ++high) {
        double* row = data + row_offset(layout, middle, high);
        const std::size_t source_low = layout.reversed_field[high];
        for (std::size_t low = 0; low < kTileSide; ++low) {
            const std::size_t source = kTileSide * layout.reversed_field[low] + source_low;
            row[2 * low] = tile[2 * source];
            row[2 * low + 1] = tile[2 * source + 1];
        }
    }
}

// Reversal of (high, middle, low) is (reverse(low), reverse(middle), reverse(high)): each tile
// lands whole on the tile of the reversed middle value, so tiles are exchanged in pairs.
void permute_by_tiles(double* data, unsigned bits) {
    const unsigned middle_bits = bits - 2 * kTileBits;
    TileLayout layout{};
    layout.high_shift = bits - kTileBits;
    for (std::size_t v = 0; v < kTileSide; ++v) {
        layout.reversed_field[v] = reverse_bits(v, kTileBits);
    }
    Tile first;
    Tile second;
    const std::size_t middles = std::size_t{1} << middle_bits;
    for (std::size_t middle = 0; middle < middles; ++middle) {
        const std::size_t partner = reverse_bits(middle, middle_bits);
        if (partner < middle) {
            continue;
        }
        if (middle + 1 < middles && reverse_bits(middle + 1, middle_bits) > middle + 1) {
            prefetch_tile(data, layout, reverse_bits(middle + 1, middle_bits));
        }
        load_tile(data, layout, middle, first);
        if (partner == middle) {
            store_tile_reversed(data, layout, middle, first);
            continue;
        }
        load_tile(data, layout, partner, second);
        store_tile_reversed(data, layout, partner, first);
        store_tile_reversed(data, layout, middle, second);
    }
}

} // namespace

void bit_reverse_permute(double* data, std::size_t n) {
    const unsigned bits = bit_count(n);
    if (bits < 2 * kTileBits) {
        permute_by_swaps(data, n);
        return;
    }
    permute_by_tiles(data, bits);
}
