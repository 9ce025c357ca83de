#include "audio/out_of_memory.h"

namespace {

OutOfMemoryHandler g_handler = nullptr;

} // namespace

OutOfMemoryHandler set_out_of_memory_handler(OutOfMemoryHandler handler) {
    const OutOfMemoryHandler previous = g_handler;
    g_handler = handler;
    return previous;
}

void report_out_of_memory(std::size_t bytes) {
    if (g_handler != nullptr) g_handler(bytes);
}
