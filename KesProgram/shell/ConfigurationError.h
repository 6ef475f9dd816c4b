#pragma once

#include <KesCommon/Export.h>

#include <stdexcept>
#include <string>

namespace KesProgram {

/// The configuration file could not be written while the program was closing. The text can be shown to the
/// user.
///
/// The base presenter tells it in place of what `_saveXmlConfig` has thrown. GUI thread.
class KES_EXPORT ConfigurationError : public std::runtime_error {
public:
    /// `path`: that of the file; `reason`: why.
    ConfigurationError(const std::string& path, const std::string& reason);
    ~ConfigurationError() override;
};

} // namespace KesProgram
