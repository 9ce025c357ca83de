// Texts that stop growing at a fixed capacity instead of failing: the run's error text and the
// lists of gating failures.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Appends `separator` (only when `text` is not empty) and `piece` until `text` holds `capacity`
// characters; what does not fit is dropped silently, so a piece that only partly fits is cut.
void append_capped(std::string& text, std::string_view separator, std::string_view piece,
                   std::size_t capacity);
