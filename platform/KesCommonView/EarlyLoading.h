#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Worker.h>

#include <optional>

namespace Kes {

/// Gets the fonts' configuration and the library that draws pictures ready on a thread of its own while the
/// GUI thread connects to the display; both are needed for the first frame and take their time.
///
/// Made by `main` before GTK is initialised, when the process's locale is set; nothing depends on its
/// success. The destructor waits for the thread.
class KES_EXPORT EarlyLoading {
public:
    EarlyLoading();
    ~EarlyLoading();
    EarlyLoading(const EarlyLoading&) = delete;
    EarlyLoading& operator=(const EarlyLoading&) = delete;

private:
    std::optional<Worker> _thread;
};

} // namespace Kes
