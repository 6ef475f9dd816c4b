// The settings of the relay under test (settings.xml): an archive keeps any text, the test object decides.

#include "TreeXml.h"

#include <KesTreeRelay/RelayNodes.h>

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static const auto stage = KesTree::RelayNodes::overcurrentStage();
    checkTreeXml(*stage, std::string(reinterpret_cast<const char*>(bytes), size), true);
    return 0;
}
