#pragma once

#include <KesCommon/Export.h>

#include <string>

namespace Kes {

/// What an `errno` means, for a user, in the language of the process where the family has words of its own
/// for it, else in those of the system. No full stop. Any thread.
KES_EXPORT std::string getSystemErrorText(int error);

} // namespace Kes
