// Text searches the chart tests share: counting a fragment and collecting what follows another.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

inline std::size_t count_of(const std::string& text, const std::string& piece) {
    std::size_t count = 0;
    for (std::size_t at = text.find(piece); at != std::string::npos;
         at = text.find(piece, at + piece.size())) {
        ++count;
    }
    return count;
}

// For every occurrence of `prefix`, the text after it up to the next `end` character, in order.
inline std::vector<std::string> texts_after(const std::string& text, const std::string& prefix,
                                            char end) {
    std::vector<std::string> found;
    for (std::size_t at = text.find(prefix); at != std::string::npos;
         at = text.find(prefix, at + prefix.size())) {
        const std::size_t from = at + prefix.size();
        found.push_back(text.substr(from, text.find(end, from) - from));
    }
    return found;
}
