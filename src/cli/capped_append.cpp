#include "cli/capped_append.h"

#include <algorithm>

void append_capped(std::string& text, std::string_view separator, std::string_view piece,
                   std::size_t capacity) {
    std::string joined(text.empty() ? std::string_view{} : separator);
    joined += piece;
    const std::size_t room = capacity > text.size() ? capacity - text.size() : 0;
    text.append(joined, 0, std::min(room, joined.size()));
}
