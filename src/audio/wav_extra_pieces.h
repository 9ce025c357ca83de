// Splitting an extra-chunk byte buffer into pieces for the float writer, which writes its own
// "fact" chunk and therefore leaves out any "fact" chunk found among the extra chunks.
#pragma once

#include <cstdint>
#include <span>

// The piece at the front of `rest`: an 8-byte chunk header with its padded payload, cut short at
// the end of the buffer; fewer than 8 remaining bytes form one last piece.
std::span<const std::uint8_t> wav_front_piece(std::span<const std::uint8_t> rest);

// True for a piece whose id is "fact".
bool wav_piece_is_fact(std::span<const std::uint8_t> piece);

// Total length of the pieces that are not "fact" chunks.
std::uint64_t wav_kept_pieces_length(std::span<const std::uint8_t> extra);
