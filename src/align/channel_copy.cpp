#include "align/channel_copy.h"

#include <new>

MonoBuffer copy_channel(const WavFile& file, std::size_t k) {
    if (k >= file.channels) return nullptr;
    MonoBuffer out(new (std::nothrow) double[file.frames]);
    if (out) {
        for (std::size_t f = 0; f < file.frames; ++f) {
            out[f] = file.samples[f * file.channels + k];
        }
    }
    return out;
}
