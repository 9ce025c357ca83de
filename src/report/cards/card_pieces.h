// Fragments several cards share: the " fail" class suffix, channel labels, the stereo gallery
// (one block per channel with its heading and element-id suffix), and the tiles of a tile row.
#pragma once

#include "report/page/text_buffer.h"

#include <cstdint>

// " fail" for a value that shows a failing figure, else "".
const char* fail_suffix(bool failing);

// Blocks a per-channel card shows: two for a stereo reference, one for every other count.
unsigned gallery_blocks(std::uint32_t channels);
// "L" / "R" for a stereo reference, "Mono" otherwise.
const char* channel_label(std::uint32_t channels, unsigned channel);
// "-ch0" / "-ch1" for a stereo reference, "" otherwise.
const char* channel_suffix(std::uint32_t channels, unsigned channel);
// "<h4 class=\"channel-gallery-heading\">Left Channel</h4>\n" (or Right) before a stereo block;
// nothing for a single block.
bool append_gallery_heading(TextBuffer& page, std::uint32_t channels, unsigned channel);

// For each block (two in stereo, else one): its heading, then `block(channel)`.
template <typename Block>
bool append_gallery(TextBuffer& page, std::uint32_t channels, Block block) {
    for (unsigned c = 0; c < gallery_blocks(channels); ++c)
        if (!append_gallery_heading(page, channels, c) || !block(c)) return false;
    return true;
}

// "<div class=\"tile-row\">\n", with " card-row-gap" added for the second channel's row.
bool append_channel_tile_row_open(TextBuffer& page, unsigned channel);
// "</div>\n".
bool append_tile_row_close(TextBuffer& page);

// "<div class=\"tile\"><div class=\"k\">%s</div><div class=\"v%s\">"; the value follows and
// append_tile_close ends the tile with "</div></div>\n".
bool append_tile_open(TextBuffer& page, const char* key, bool failing);
bool append_tile_close(TextBuffer& page);
// A whole tile holding `value` (HTML, written as given) or a count "%zu".
bool append_tile_text(TextBuffer& page, const char* key, bool failing, const char* value);
bool append_tile_count(TextBuffer& page, const char* key, bool failing, std::uint64_t value);
