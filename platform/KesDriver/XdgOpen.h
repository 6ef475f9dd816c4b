#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>

#include <string>

namespace cross {

/// Opens a file with the desktop's default application for it. GUI thread. The failure's text can be shown
/// to the user; the way to the desktop is replaceable in `Kes::DesktopOpener`.
KES_EXPORT Kes::Result xdg_open(const std::string& path);

} // namespace cross
