// The one escape rule for the contents of a JSON string, shared by the results writers and by the
// report's TextBuffer. It works byte by byte (nothing is decoded as UTF-8): '"' and '\' become
// backslash pairs, tab, LF and CR become \t, \n and \r, every other byte below 32 becomes \u00xx
// with four lower-case hex digits, and every other byte ('/', 127 and 128-255 included) passes
// unchanged. So every escaped text is accepted by a strict JSON parser, whatever bytes it came
// from.
#pragma once

#include <string_view>

// The replacement for `byte`, or an empty view when the byte is written as itself. The view
// points at static text and stays valid for the whole run.
std::string_view json_escaped_byte(unsigned char byte);
