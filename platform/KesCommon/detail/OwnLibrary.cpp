#include <KesCommon/detail/OwnLibrary.h>

#include <dlfcn.h>

#include <system_error>

namespace Kes {

std::filesystem::path getOwnLibraryFolder()
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&getOwnLibraryFolder), &info) == 0 || !info.dli_fname)
        return {};
    std::error_code error;
    return std::filesystem::canonical(info.dli_fname, error).parent_path();
}

} // namespace Kes
