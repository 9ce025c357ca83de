// Shared pieces of the alignment-diagnosis tests: the default alignment settings at 48 kHz,
// generated recordings and edits of them, one call that aligns, diagnoses and explains, and the
// fixed endings of the sentences that carry no numbers.
#pragma once

#include "align/alignment_diagnosis.h"
#include "audio/wav_file.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

inline constexpr std::uint32_t kDiagRate = 48000;
inline constexpr std::size_t kDiagMaxLag = 4800; // 0.1 s
inline constexpr std::int64_t kDiagTolerance = 2;
inline constexpr double kDiagThreshold = 0.9;
inline constexpr double kDiagSilenceDb = -70.0;

// Seeded uniform noise in [-0.5, 0.5).
std::vector<double> diag_noise(std::uint64_t seed, std::size_t frames);

// `count` zeros followed by the signal: the DUT is `count` samples late.
std::vector<double> diag_delayed(std::span<const double> signal, std::size_t count);

// The signal without its first `count` samples: the DUT is `count` samples early.
std::vector<double> diag_advanced(std::span<const double> signal, std::size_t count);

// The signal with every sample negated.
std::vector<double> diag_negated(std::span<const double> signal);

// `base` with samples [from, from + replacement.size()) overwritten by `replacement`.
std::vector<double> diag_overwritten(std::span<const double> base, std::size_t from,
                                     std::span<const double> replacement);

// `base` with `inserted` placed before sample `at`.
std::vector<double> diag_inserted(std::span<const double> base, std::size_t at,
                                  std::span<const double> inserted);

// A 48 kHz float file from equally long channels.
WavFile diag_wav(std::span<const std::vector<double>> channels);
WavFile diag_mono(std::span<const double> samples);
WavFile diag_stereo(std::span<const double> left, std::span<const double> right);

struct DiagRun {
    AlignmentResult alignment;
    ChannelDiagnoses diagnosis;
    std::string text; // empty when the files aligned
};

// align_channels, then diagnose_alignment and explain_alignment_failure with the defaults.
DiagRun diag_run(const WavFile& ref, const WavFile& dut);

// printf into a string, for the figures a test reads from measured records.
std::string diag_format(const char* format, ...) __attribute__((format(printf, 1, 2)));

inline constexpr const char* kDiagHead = "alignment failed -- ";
inline constexpr const char* kNoMatchTail =
    " in the whole file, its first and last stretch, or a wider search. The files may not "
    "contain the same audio, or the DUT is too heavily changed to line up. Check that you gave "
    "the right pair.";
inline constexpr const char* kRightSilent =
    " The right channel is silent in the reference or the DUT, so it offered no offset to go by.";
inline constexpr const char* kLeftSilent =
    " The left channel is silent in the reference or the DUT, so it offered no offset to go by.";
