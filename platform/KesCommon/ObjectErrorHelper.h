#pragma once

#include <KesCommon/ObjectError.h>

#include <string>

/// Errors as the user reads them. Any thread.
namespace Kes::ObjectErrorHelper {

/// The messages of the errors, one per line; inner errors follow their outer one on lines of their own,
/// indented by two blanks per level. Null errors are skipped. No newline at the end.
KES_EXPORT std::string toDisplayString(const ObjectError::List& errors);

} // namespace Kes::ObjectErrorHelper
