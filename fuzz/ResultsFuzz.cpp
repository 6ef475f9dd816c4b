// The measured values (test-results.xml).

#include "ArchivePart.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    checkArchivePart("test-results.xml", bytes, size);
    return 0;
}
