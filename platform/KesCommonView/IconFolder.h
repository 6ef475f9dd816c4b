#pragma once

#include <KesCommon/Export.h>

#include <string>

namespace KesView {

/// Icons that the libraries of the family bring along for the icon theme. GUI thread.
class KES_EXPORT IconFolder {
public:
    /// Makes the icons of a folder in the themes directory known to the icon theme, for every display; each
    /// name is added once. The folder holds "hicolor/<size>/<context>/<icon>.svg". May be called before the
    /// display is opened; a folder that does not exist has no icons.
    static void add(const std::string& name);
};

} // namespace KesView
