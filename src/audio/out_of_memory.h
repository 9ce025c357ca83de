// What happens when memory runs out. Code that allocates reports a request that could not be met
// here before it falls back to its own handling; the program installs a handler that ends the run
// with one line, so that no verdict, diagnosis or file is ever made from a buffer that could not
// be had. With no handler installed (the library tests) a report changes nothing.
#pragma once

#include <cstddef>

using OutOfMemoryHandler = void (*)(std::size_t bytes);

// Installs `handler` (null for none) and returns the one it replaces.
OutOfMemoryHandler set_out_of_memory_handler(OutOfMemoryHandler handler);

// Tells the installed handler that a request for `bytes` could not be met.
void report_out_of_memory(std::size_t bytes);
