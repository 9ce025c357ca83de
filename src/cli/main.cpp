// The sonalyx executable: hands the argument vector to the dispatcher and returns its status.
// Memory that cannot be had ends the run with one line naming the stage and the request (see
// run_stage.h), wherever it is asked for: the allocation functions are replaced here, in the
// program alone, and the libraries' own reports go to the same stop.
#include "audio/audio.h"
#include "cli/dispatch.h"
#include "cli/run_stage.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

void* allocate(std::size_t size) {
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) stop_out_of_memory(size);
    return block;
}

void* allocate_aligned(std::size_t size, std::align_val_t alignment) {
    const auto align = std::max(static_cast<std::size_t>(alignment), sizeof(void*));
    void* block = nullptr;
    if (::posix_memalign(&block, align, size == 0 ? 1 : size) != 0) stop_out_of_memory(size);
    return block;
}

} // namespace

void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
    return allocate(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return allocate_aligned(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return allocate_aligned(size, alignment);
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

int main(int argc, char** argv) {
    set_out_of_memory_handler(stop_out_of_memory);
    const int status = sonalyx_main(argc, argv);
    finish_run_stages();
    return status;
}
