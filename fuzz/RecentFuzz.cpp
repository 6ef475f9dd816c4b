// The list of recent files as its text form.

#include "Require.h"

#include <KesCommon/RecentCollection.h>

#include <cstdint>
#include <set>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    constexpr unsigned int capacity = 10;
    Kes::RecentCollection recent(capacity);
    recent.deserialize(std::string(reinterpret_cast<const char*>(bytes), size));
    const auto& paths = recent.getCollection();
    require(paths.size() <= capacity, "the list keeps to its capacity");
    require(std::set<std::string>(paths.begin(), paths.end()).size() == paths.size(),
            "each path stands once");
    for (const auto& path : paths)
        require(!path.empty(), "no path is empty");
    Kes::RecentCollection again(capacity);
    again.deserialize(recent.serialize());
    require(again.getCollection() == paths, "what was written is read back");
    return 0;
}
