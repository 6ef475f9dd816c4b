#pragma once

#include <cstddef>

/// How much heap memory the process uses, libraries included. Counts every malloc of the program that links
/// this; not for sanitizer builds, which bring an allocator of their own. Any thread.
namespace HeapMeter {

/// Bytes allocated now.
std::size_t getUsed();

/// The most bytes ever allocated at once since the last `resetPeak`.
std::size_t getPeak();

void resetPeak();

/// Keeps freed memory and maps none apart, so that page faults do not decide what is measured.
void fixAllocator();

} // namespace HeapMeter
