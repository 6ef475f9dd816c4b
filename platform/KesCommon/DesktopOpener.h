#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>

#include <functional>
#include <string>

namespace Kes {

/// Opens files with the application that the desktop has for them. GUI thread.
class KES_EXPORT DesktopOpener {
public:
    using Backend = std::function<Result(const std::string&)>;

    /// Starts the default application on a local file and returns at once. Fails with a text for the user
    /// when the file is missing, no application is there for it, or the application cannot be started.
    static Result open(const std::string& path);

    /// Puts another function in place of the desktop, for unattended runs and tests; it gets only paths of
    /// existing files. Null stands for the desktop. Returns the function so far.
    static Backend replace(Backend backend);
};

} // namespace Kes
