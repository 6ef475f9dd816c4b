#include <KesCommon/LateLibrary.h>

#include <KesCommon/Log.h>
#include <KesCommon/detail/OwnLibrary.h>

#include <dlfcn.h>

#include <string>

namespace Kes {

void* findLateSymbol(const char* library, const char* symbol)
{
    const auto file =
        getOwnLibraryFolder() / "kesprogram" / (std::string("lib") + library + ".so." + KES_SOVERSION);
    void* const handle = dlopen(file.c_str(), RTLD_NOW);
    void* const found = handle ? dlsym(handle, symbol) : nullptr;
    if (!found)
        KesLog::Log::writeError(std::string("A part of the program cannot be loaded: ") + dlerror());
    return found;
}

} // namespace Kes
