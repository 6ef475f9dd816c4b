#pragma once

#include <KesCommon/Export.h>

/// Libraries of the family that are loaded when they are first needed: each brings libraries of others with
/// it that no start of a program should wait for.
namespace Kes {

/// The symbol `symbol` of the library `library`, such as "KesXslt", which lies in the folder kesprogram
/// beside this one and stays loaded. Null when it cannot be had; the reason is written to the log. Any
/// thread.
KES_EXPORT void* findLateSymbol(const char* library, const char* symbol);

/// The same for a function that the library declares as `extern "C"`.
template <typename Function>
Function* findLate(const char* library, const char* symbol)
{
    return reinterpret_cast<Function*>(findLateSymbol(library, symbol));
}

} // namespace Kes
