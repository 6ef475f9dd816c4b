#pragma once

#include <KesCommon/Export.h>

#include <string>

namespace lng::TestProgram {

/// The text of the test programs' common part for a key, in the language of the process. An unknown key is
/// returned itself, as the caller's own character data. Any thread.
KES_EXPORT const char* get(const std::string& key);

} // namespace lng::TestProgram
