// libFuzzer harness for the WAV reader: each input is written to one temporary file and read
// back; a successful read must describe a consistent, finite record. The read is then repeated
// once for each allocation request it made, with that request failing (operator new throwing
// std::bad_alloc, its nothrow forms returning null): each such read must either fail with the
// record zeroed or, if it did not need that allocation, give the same record as the first read.
// ASan and libFuzzer's leak check catch a crash or leak on the way out of a failed allocation.
#include "audio/wav_reader.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <string>
#include <unistd.h>

namespace {

// Allocation requests seen while a read is watched, and which one to fail (0: none). Outside a
// watched read every request is served, so libFuzzer and the harness allocate freely.
struct AllocationWatch {
    bool active = false;
    std::size_t requests = 0;
    std::size_t fail_at = 0;
    bool failed = false;
};

// One per thread, so that only the reading thread's requests are counted and failed (libFuzzer
// keeps a thread of its own that watches the memory in use).
thread_local AllocationWatch g_watch;

// Counts one request while watching; true when it is the one to fail.
bool fail_this_request() {
    if (!g_watch.active) return false;
    ++g_watch.requests;
    if (g_watch.requests != g_watch.fail_at) return false;
    g_watch.failed = true;
    return true;
}

void* allocate(std::size_t size) {
    if (fail_this_request()) return nullptr;
    return std::malloc(size == 0 ? 1 : size);
}

void* allocate_aligned(std::size_t size, std::align_val_t alignment) {
    if (fail_this_request()) return nullptr;
    const std::size_t align = std::max(static_cast<std::size_t>(alignment), sizeof(void*));
    void* block = nullptr;
    return posix_memalign(&block, align, size == 0 ? 1 : size) == 0 ? block : nullptr;
}

void* allocate_or_throw(std::size_t size) {
    void* block = allocate(size);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

void* allocate_aligned_or_throw(std::size_t size, std::align_val_t alignment) {
    void* block = allocate_aligned(size, alignment);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

} // namespace

// Every replaceable allocation function goes through the watch; every matching deallocation
// function frees with free(), which serves both malloc and posix_memalign blocks.
void* operator new(std::size_t size) {
    return allocate_or_throw(size);
}
void* operator new[](std::size_t size) {
    return allocate_or_throw(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return allocate_aligned_or_throw(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return allocate_aligned_or_throw(size, alignment);
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return allocate_aligned(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return allocate_aligned(size, alignment);
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete[](void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    std::free(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::align_val_t) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept {
    std::free(block);
}
void operator delete(void* block, std::align_val_t, const std::nothrow_t&) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::align_val_t, const std::nothrow_t&) noexcept {
    std::free(block);
}

namespace {

// Failure points tried per input; a read makes a handful of requests, so this is rarely reached.
constexpr std::size_t kMaxFailurePoints = 64;

// The temporary file, created once per process and removed at exit.
std::string g_input_path;

void remove_input() {
    unlink(g_input_path.c_str());
}

const std::string& input_path() {
    if (g_input_path.empty()) {
        char pattern[] = "/tmp/sonalyx-fuzz-wav-XXXXXX";
        const int fd = mkstemp(pattern);
        if (fd < 0) std::abort();
        close(fd);
        g_input_path = pattern;
        std::atexit(remove_input);
    }
    return g_input_path;
}

bool write_input(const std::string& path, const std::uint8_t* data, std::size_t size) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) return false;
    const bool written = size == 0 || std::fwrite(data, 1, size, file) == size;
    return std::fclose(file) == 0 && written;
}

void check_record(const WavFile& file) {
    if (file.sample_rate == 0 || file.channels == 0) std::abort();
    if (file.samples.size() != file.frames * file.channels) std::abort();
    if (!wav_format_is_known(file.format)) std::abort();
    for (const double sample : file.samples) {
        if (!std::isfinite(sample)) std::abort();
    }
}

void check_zeroed(const WavFile& file) {
    if (file.sample_rate != 0 || file.channels != 0 || file.format != 0 || file.extensible ||
        file.channel_mask != 0 || !file.samples.empty() || file.frames != 0 ||
        !file.extra_chunks.empty()) {
        std::abort();
    }
}

// Samples compare by value, which is exact here since a successful read holds no NaN.
bool same_record(const WavFile& a, const WavFile& b) {
    return a.sample_rate == b.sample_rate && a.channels == b.channels && a.format == b.format &&
           a.extensible == b.extensible && a.channel_mask == b.channel_mask &&
           a.frames == b.frames && a.samples == b.samples && a.extra_chunks == b.extra_chunks;
}

// Reads `path` while watching allocations, failing request `fail_at` (0: none). Returns whether
// the read succeeded; `requests` gets the number of requests it made, `failed` whether one failed.
bool watched_read(const char* path, WavFile& file, std::size_t fail_at, std::size_t& requests,
                  bool& failed) {
    g_watch = AllocationWatch{true, 0, fail_at, false};
    const bool read = wav_read(path, file);
    requests = g_watch.requests;
    failed = g_watch.failed;
    g_watch = AllocationWatch{};
    return read;
}

// Repeats the read with each of its first `requests` allocation requests failing in turn.
void check_failed_allocations(const char* path, const WavFile& first, bool first_read,
                              std::size_t requests) {
    for (std::size_t fail_at = 1; fail_at <= std::min(requests, kMaxFailurePoints); ++fail_at) {
        WavFile file;
        std::size_t seen = 0;
        bool failed = false;
        const bool read = watched_read(path, file, fail_at, seen, failed);
        if (!read) {
            check_zeroed(file);
        } else if (!first_read || !same_record(file, first)) {
            std::abort();
        }
        // A read whose requests were all served must end as the first one did.
        if (!failed && read != first_read) std::abort();
        wav_free(file);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string& path = input_path();
    if (!write_input(path, data, size)) std::abort();
    WavFile file;
    std::size_t requests = 0;
    bool failed = false;
    const bool read = watched_read(path.c_str(), file, 0, requests, failed);
    if (read) {
        check_record(file);
    } else {
        check_zeroed(file);
    }
    check_failed_allocations(path.c_str(), file, read, requests);
    wav_free(file);
    check_zeroed(file);
    return 0;
}
