#include <KesCommon/LateLibrary.h>

#include <KesCommon/Log.h>

#include <dlfcn.h>

#include <filesystem>
#include <string>

namespace Kes {

namespace {

/// The folder of this library. Whoever stands between it and the loader, as tools that follow memory do, would
/// have the search for a bare name begin elsewhere.
std::filesystem::path getOwnFolder()
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&findLateSymbol), &info) == 0 || !info.dli_fname)
        return {};
    return std::filesystem::path(info.dli_fname).parent_path();
}

} // namespace

void* findLateSymbol(const char* library, const char* symbol)
{
    const auto file = getOwnFolder() / (std::string("lib") + library + ".so." + KES_SOVERSION);
    void* const handle = dlopen(file.c_str(), RTLD_NOW);
    void* const found = handle ? dlsym(handle, symbol) : nullptr;
    if (!found)
        KesLog::Log::writeError(std::string("A part of the program cannot be loaded: ") + dlerror());
    return found;
}

} // namespace Kes
