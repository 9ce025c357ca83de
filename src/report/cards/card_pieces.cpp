#include "report/cards/card_pieces.h"

const char* fail_suffix(bool failing) {
    return failing ? " fail" : "";
}

unsigned gallery_blocks(std::uint32_t channels) {
    return channels == 2 ? 2 : 1;
}

const char* channel_label(std::uint32_t channels, unsigned channel) {
    if (channels != 2) return "Mono";
    return channel == 0 ? "L" : "R";
}

const char* channel_suffix(std::uint32_t channels, unsigned channel) {
    if (channels != 2) return "";
    return channel == 0 ? "-ch0" : "-ch1";
}

bool append_gallery_heading(TextBuffer& page, std::uint32_t channels, unsigned channel) {
    if (channels != 2) return true;
    return text_append_format(page, "<h4 class=\"channel-gallery-heading\">%s Channel</h4>\n",
                              channel == 0 ? "Left" : "Right");
}

bool append_channel_tile_row_open(TextBuffer& page, unsigned channel) {
    return text_append_format(page, "<div class=\"tile-row%s\">\n",
                              channel == 0 ? "" : " card-row-gap");
}

bool append_tile_row_close(TextBuffer& page) {
    return text_append(page, "</div>\n");
}

bool append_tile_open(TextBuffer& page, const char* key, bool failing) {
    return text_append_format(page,
                              "<div class=\"tile\"><div class=\"k\">%s</div><div class=\"v%s\">",
                              key, fail_suffix(failing));
}

bool append_tile_close(TextBuffer& page) {
    return text_append(page, "</div></div>\n");
}

bool append_tile_text(TextBuffer& page, const char* key, bool failing, const char* value) {
    return append_tile_open(page, key, failing) && text_append(page, value) &&
           append_tile_close(page);
}

bool append_tile_count(TextBuffer& page, const char* key, bool failing, std::uint64_t value) {
    return append_tile_open(page, key, failing) && text_append_format(page, "%zu", value) &&
           append_tile_close(page);
}
