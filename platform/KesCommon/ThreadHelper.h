#pragma once

#include <KesCommon/Export.h>

#include <string>

namespace Kes::ThreadHelper {

/// Names the calling thread for debuggers and process viewers. The system keeps 15 bytes; a longer name
/// is shortened to the whole UTF-8 characters that fit. Any thread.
KES_EXPORT void setCurrentThreadName(const std::string& name);

} // namespace Kes::ThreadHelper
