// The file of the hardware configuration.

#include "MemoryFile.h"
#include "Require.h"

#include <KesDevice/detail/HardwareFile.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const MemoryFile file(bytes, size);
    std::string error;
    const auto hardware = KesDevice::HardwareFile::read(file.getPath(), error);
    require(hardware ? error.empty() : !error.empty(), "a refused file is told of, a good one is not");
    return 0;
}
