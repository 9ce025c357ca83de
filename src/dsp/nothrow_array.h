// Scratch arrays from the non-throwing allocation: exhausted memory becomes a null pointer that
// the caller turns into its documented fallback, never an exception.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

// `count` uninitialised doubles, or null when they cannot be had, also when their byte size would
// pass the largest object size (where the array form of new would throw even when non-throwing).
inline std::unique_ptr<double[]> try_allocate_doubles(std::size_t count) {
    if (count > static_cast<std::size_t>(PTRDIFF_MAX) / sizeof(double)) return nullptr;
    return std::unique_ptr<double[]>(new (std::nothrow) double[count]);
}
