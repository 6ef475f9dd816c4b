// The settings of the relay under test (settings.xml): the archive keeps any text, the test object decides.

#include "ArchivePart.h"
#include "TreeXml.h"

#include <KesTreeRelay/RelayNodes.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    checkArchivePart("settings.xml", bytes, size);
    static const auto stage = KesTree::RelayNodes::overcurrentStage();
    checkTreeXml(*stage, std::string(reinterpret_cast<const char*>(bytes), size), true);
    return 0;
}
