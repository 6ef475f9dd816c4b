#include "HeapMeter.h"

#include <malloc.h>

#include <atomic>

namespace {

std::atomic<std::size_t> used;
std::atomic<std::size_t> peak;

void* counted(void* memory)
{
    if (memory) {
        const auto now = used += malloc_usable_size(memory);
        for (auto most = peak.load(); most < now && !peak.compare_exchange_weak(most, now);) {
        }
    }
    return memory;
}

void uncount(void* memory)
{
    if (memory)
        used -= malloc_usable_size(memory);
}

} // namespace

// The C library's own functions under the names that it offers for replacing malloc.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void __libc_free(void* memory);

void* malloc(std::size_t size)
{
    return counted(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size)
{
    return counted(__libc_calloc(count, size));
}

void* realloc(void* memory, std::size_t size)
{
    // Growing may need both blocks for a moment; what counts here is that the old one is given up.
    uncount(memory);
    return counted(__libc_realloc(memory, size));
}

void free(void* memory)
{
    uncount(memory);
    __libc_free(memory);
}
}

namespace HeapMeter {

std::size_t getUsed()
{
    return used;
}

std::size_t getPeak()
{
    return peak;
}

void resetPeak()
{
    peak = used.load();
}

void fixAllocator()
{
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TOP_PAD, 64 << 20);
    mallopt(M_TRIM_THRESHOLD, 2000000000);
}

} // namespace HeapMeter
