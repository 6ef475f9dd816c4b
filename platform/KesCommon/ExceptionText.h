#pragma once

#include <KesCommon/Export.h>

#include <string>

namespace Kes {

/// What the exception that is being handled says, whether it is a standard one or one of glibmm, for a
/// message or the log; "An unknown error occurred." for any other one. Only inside a catch block. Any thread.
KES_EXPORT std::string getCurrentExceptionText();

} // namespace Kes
