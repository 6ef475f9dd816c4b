#include <KesCommonView/UpdateView.h>

#include <KesCommonView/ApplicationDispatcher.h>

#include <utility>

namespace Kes {

void beginUpdateView(std::function<void()> function)
{
    ApplicationDispatcher::getInstance().begin(std::move(function));
}

void waitUpdateView(std::function<void()> function)
{
    ApplicationDispatcher::getInstance().wait(std::move(function));
}

} // namespace Kes
