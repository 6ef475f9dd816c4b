#include <KesCommonView/FirstFrame.h>

#include <sigc++/signal.h>

#include <optional>
#include <utility>

namespace Kes {

namespace {

std::optional<sigc::signal<void()>>& waiting()
{
    static std::optional<sigc::signal<void()>> slots;
    return slots;
}

} // namespace

void FirstFrame::expect()
{
    if (!waiting())
        waiting().emplace();
}

void FirstFrame::tellDrawn()
{
    if (const auto slots = std::exchange(waiting(), std::nullopt))
        slots->emit();
}

void FirstFrame::forget()
{
    waiting().reset();
}

void FirstFrame::call(const sigc::slot<void()>& slot)
{
    if (waiting())
        waiting()->connect(slot);
    else
        slot();
}

} // namespace Kes
