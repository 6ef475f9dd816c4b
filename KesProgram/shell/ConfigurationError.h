#pragma once

#include <KesCommon/Export.h>

#include <functional>
#include <stdexcept>
#include <string>

namespace KesProgram {

/// The configuration file could not be written while the program was closing. The text can be shown to the
/// user.
///
/// A program's presenter lets its `_saveXmlConfig` throw it; `ProgramMain` catches it at the top, tells the
/// user and closes the program all the same. GUI thread.
class KES_EXPORT ConfigurationError : public std::runtime_error {
public:
    /// `path`: that of the file; `reason`: why.
    ConfigurationError(const std::string& path, const std::string& reason);
    ~ConfigurationError() override;

    /// Calls the function; every exception that leaves it becomes a `ConfigurationError`.
    static void translate(const std::string& path, const std::function<void()>& write);
};

} // namespace KesProgram
