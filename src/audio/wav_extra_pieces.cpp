#include "audio/wav_extra_pieces.h"

#include "audio/wav_bytes.h"

#include <algorithm>

std::span<const std::uint8_t> wav_front_piece(std::span<const std::uint8_t> rest) {
    if (rest.size() < 8) return rest;
    const std::uint64_t size = wav_load_u32(rest.data() + 4);
    const std::uint64_t length = 8 + size + (size & 1u);
    return rest.first(static_cast<std::size_t>(std::min<std::uint64_t>(length, rest.size())));
}

bool wav_piece_is_fact(std::span<const std::uint8_t> piece) {
    // A short last piece still has an id when at least four bytes of it remain.
    return piece.size() >= 4 && wav_id_is(piece.data(), "fact");
}

std::uint64_t wav_kept_pieces_length(std::span<const std::uint8_t> extra) {
    std::uint64_t length = 0;
    while (!extra.empty()) {
        const std::span<const std::uint8_t> piece = wav_front_piece(extra);
        if (!wav_piece_is_fact(piece)) length += piece.size();
        extra = extra.subspan(piece.size());
    }
    return length;
}
