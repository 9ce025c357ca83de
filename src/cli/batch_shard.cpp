#include "cli/batch_shard.h"

#include <charconv>

namespace {

constexpr std::size_t kMaxShards = 100000;

std::optional<std::size_t> whole_number(std::string_view text) {
    std::size_t value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (text.empty() || error != std::errc() || stop != end) return std::nullopt;
    return value;
}

} // namespace

std::optional<Shard> parse_shard(std::string_view text) {
    const std::size_t slash = text.find('/');
    if (slash == std::string_view::npos) return std::nullopt;
    const auto index = whole_number(text.substr(0, slash));
    const auto count = whole_number(text.substr(slash + 1));
    if (!index || !count || *count == 0 || *count > kMaxShards || *index >= *count)
        return std::nullopt;
    return Shard{*index, *count};
}

bool shard_takes(const Shard& shard, std::size_t pair_index) {
    return pair_index % shard.count == shard.index;
}

std::string shard_file_name(const Shard& shard) {
    return "shard-" + std::to_string(shard.index) + "-of-" + std::to_string(shard.count) + ".json";
}
