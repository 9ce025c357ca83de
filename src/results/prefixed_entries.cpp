#include "results/prefixed_entries.h"

#include <string>

namespace {

std::string prefixed_key(std::string_view prefix, const char* suffix) {
    std::string key(prefix);
    key += suffix;
    return key;
}

} // namespace

bool json_prefixed_flag(FlatJson& json, std::string_view prefix, const char* suffix, bool flag) {
    return json_int(json, prefixed_key(prefix, suffix).c_str(), flag ? 1 : 0);
}

bool json_prefixed_count(FlatJson& json, std::string_view prefix, const char* suffix,
                         std::uint64_t count) {
    return json_long(json, prefixed_key(prefix, suffix).c_str(), static_cast<long>(count));
}

bool json_prefixed_real(FlatJson& json, std::string_view prefix, const char* suffix, double value) {
    return json_real(json, prefixed_key(prefix, suffix).c_str(), value);
}

bool json_prefixed_text(FlatJson& json, std::string_view prefix, const char* suffix,
                        std::string_view value) {
    return json_text(json, prefixed_key(prefix, suffix).c_str(), value);
}
