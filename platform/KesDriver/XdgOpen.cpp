#include <KesDriver/XdgOpen.h>

#include <KesCommon/DesktopOpener.h>

namespace cross {

Kes::Result xdg_open(const std::string& path)
{
    return Kes::DesktopOpener::open(path);
}

} // namespace cross
