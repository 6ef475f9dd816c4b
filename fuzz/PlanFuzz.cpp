// The plan of a test (plan.xml).

#include "ArchivePart.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    checkArchivePart("plan.xml", bytes, size);
    return 0;
}
