#include <KesCommonView/UpdateViewGuard.h>

#include <KesCommonView/ApplicationDispatcher.h>
#include <KesCommonView/UpdateView.h>

#include <utility>

namespace Kes {

UpdateViewGuard::UpdateViewGuard() : _token(std::make_shared<LifetimeToken>()) {}

UpdateViewGuard::~UpdateViewGuard() = default;

void UpdateViewGuard::safeBeginUpdateView(std::function<void()> function) const
{
    beginUpdateView(_guarded(std::move(function)));
}

void UpdateViewGuard::safeWaitUpdateView(std::function<void()> function) const
{
    waitUpdateView(_guarded(std::move(function)));
}

void UpdateViewGuard::safeUpdateView(std::function<void()> function) const
{
    if (ApplicationDispatcher::getInstance().isGuiThread())
        function();
    else
        safeBeginUpdateView(std::move(function));
}

std::function<void()> UpdateViewGuard::_guarded(std::function<void()> function) const
{
    return [token = std::weak_ptr<LifetimeToken>(_token), function = std::move(function)] {
        if (const auto alive = token.lock())
            function();
    };
}

} // namespace Kes
