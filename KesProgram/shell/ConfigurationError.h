#pragma once

#include <KesCommon/Export.h>

#include <stdexcept>
#include <string>

namespace KesProgram {

/// The configuration file could not be written while the program was closing. The text can be shown to the
/// user.
///
/// Thrown by `_saveXmlConfig` of the shell; the presenter shows it to the user and closes the program anyway.
/// GUI thread.
class KES_EXPORT ConfigurationError : public std::runtime_error {
public:
    /// `path`: that of the file; `reason`: why, in words for a user.
    ConfigurationError(const std::string& path, const std::string& reason);
    ~ConfigurationError() override;
};

} // namespace KesProgram
