// Small helpers over C stdio for the WAV reader and writer: an owning file handle, exact reads, and
// growth of buffers that reports exhausted memory as a plain false.
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <new>
#include <stdexcept>
#include <vector>

struct WavFileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using WavFileHandle = std::unique_ptr<std::FILE, WavFileCloser>;

// True when exactly `size` bytes were read.
inline bool wav_read_exact(std::FILE* file, void* buffer, std::size_t size) {
    return std::fread(buffer, 1, size, file) == size;
}

// Resizes the vector, turning an allocation failure into false (the vector is then unchanged).
template <typename T> bool wav_try_resize(std::vector<T>& buffer, std::size_t size) {
    try {
        buffer.resize(size);
    } catch (const std::bad_alloc&) {
        return false;
    } catch (const std::length_error&) {
        return false;
    }
    return true;
}
