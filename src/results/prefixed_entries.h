// Entries whose key is a shared prefix plus a suffix, e.g. "spectral_channel_0_" + "bins_failed":
// the per-channel and per-snapshot blocks write runs of them. Flags are written as 0/1 integers,
// counts as 64-bit integers and measurements as reals.
#pragma once

#include "results/json_entries.h"

#include <cstdint>
#include <string_view>

bool json_prefixed_flag(FlatJson& json, std::string_view prefix, const char* suffix, bool flag);
bool json_prefixed_count(FlatJson& json, std::string_view prefix, const char* suffix,
                         std::uint64_t count);
bool json_prefixed_real(FlatJson& json, std::string_view prefix, const char* suffix, double value);
bool json_prefixed_text(FlatJson& json, std::string_view prefix, const char* suffix,
                        std::string_view value);
