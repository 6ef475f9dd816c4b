// Only for preloading: a test's own memory would fail as well.

#include <support/FailingCalls.h>

#include <cstddef>
#include <cstdlib>
#include <new>

// The other forms of the standard library call this one.
__attribute__((visibility("default"))) void* operator new(std::size_t size)
{
    void* memory = nullptr;
    if (!KesTest::FailingCalls::fails(KesTest::FailingCalls::Kind::Allocation, "operator new"))
        memory = std::malloc(size > 0 ? size : 1);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}
