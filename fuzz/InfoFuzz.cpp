// The circumstances of the test (info.xml).

#include "ArchivePart.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    checkArchivePart("info.xml", bytes, size);
    return 0;
}
