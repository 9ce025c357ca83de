// Counting replacements of the global allocation functions for one benchmark program, so that its
// table can show how often the measured code allocates. Include it from exactly one source file
// of the program.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>

inline std::size_t g_allocations = 0;

void* operator new(std::size_t size) {
    ++g_allocations;
    if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
    throw std::bad_alloc();
}

void operator delete(void* p) noexcept {
    std::free(p);
}

void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}
