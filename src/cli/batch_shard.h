// One machine's share of a batch: shard K of N takes the pairs whose 0-based index in the
// manifest is K modulo N, and writes their rows to shard-K-of-N.json for the merge.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

struct Shard {
    std::size_t index = 0; // K, below count
    std::size_t count = 1; // N, at least 1
};

// Reads "K/N" (decimal, 0 <= K < N, N at most 100000); nothing for any other text.
std::optional<Shard> parse_shard(std::string_view text);

bool shard_takes(const Shard& shard, std::size_t pair_index);

// "shard-K-of-N.json".
std::string shard_file_name(const Shard& shard);
