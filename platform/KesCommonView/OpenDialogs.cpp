#include <KesCommonView/OpenDialogs.h>

namespace Kes {

namespace {

unsigned count = 0;

} // namespace

bool OpenDialogs::any()
{
    return count > 0;
}

sigc::signal<void()>& OpenDialogs::signalAllClosed()
{
    static sigc::signal<void()> signal;
    return signal;
}

OpenDialogs::Scope::Scope()
{
    ++count;
}

OpenDialogs::Scope::~Scope()
{
    if (--count == 0)
        signalAllClosed().emit();
}

} // namespace Kes
