#include <KesCommonView/Window.h>

#include "WindowIcons.h"

namespace Kes {

Window::Window()
{
    set_icon_list(getWindowIcons());
}

Window::~Window() = default;

} // namespace Kes
