// Captures laid out the way the trim tool expects them: silence, the sync tone, one second of
// silence, programme material, one second of silence, the tone again, silence. The values are
// quantised to the file's format, so they are exactly what a reader gives back. The tone itself is
// passed in, which keeps this generator free of the project's own code.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

struct SyncCaptureLayout {
    std::uint32_t rate = 48000;
    std::uint32_t channels = 1;
    std::uint32_t format = 16;                 // 16 or 24 (integer codes), or 0x120 (32-bit float)
    std::optional<std::uint32_t> tone_channel; // unset: the tones are on every channel
    std::size_t lead_frames = 0;               // silence before the leading tone
    std::size_t tail_frames = 0;               // silence after the trailing tone
    std::size_t programme_frames = 0;
    double noise_peak = 0.0; // uniform noise of this half-width added to every frame
    std::uint64_t seed = 1;
};

struct SyncCapture {
    std::vector<double> samples; // interleaved, frame f channel k at f * channels + k
    std::size_t frames = 0;
    std::size_t clean_start = 0; // the first frame after the leading tone
    std::size_t clean_end = 0;   // the first frame of the trailing tone
};

// The programme holds a few multitones and noise, and, for integer formats, the most negative and
// the largest code once each.
SyncCapture make_sync_capture(const SyncCaptureLayout& layout, std::span<const double> tone);

// The capture as a WAV file: a plain PCM or float header and the codes or float values.
std::vector<std::uint8_t> sync_capture_wav_bytes(const SyncCaptureLayout& layout,
                                                 const SyncCapture& capture);

// What writing the capture's frames [first, last) back out gives on reading: the same values,
// except that the most negative integer code comes back one code higher (writers clamp to the
// symmetric range).
std::vector<double> sync_capture_rewritten(const SyncCaptureLayout& layout,
                                           const SyncCapture& capture, std::size_t first,
                                           std::size_t last);
