#pragma once

#include <KesCommon/Connection.h>
#include <KesCommon/Export.h>
#include <KesCommonView/LatestUpdate.h>

#include <functional>

namespace KesProgram {

/// Reports to its owner whether the output of any hardware in the process runs. A member of a presenter,
/// declared after what the function uses. GUI thread.
///
/// A change on another thread is reported when the GUI thread gets to it; of several only the last one is, so
/// the value may be the same twice.
class KES_EXPORT HardwareRunningWatch {
public:
    /// The function is called at once, and again on the GUI thread after every change.
    explicit HardwareRunningWatch(std::function<void(const bool& running)> apply);
    ~HardwareRunningWatch();

private:
    Kes::LatestUpdate<bool> _running;
    Kes::ScopedConnection _connection;
};

} // namespace KesProgram
