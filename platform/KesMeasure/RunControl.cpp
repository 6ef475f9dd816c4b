#include <KesMeasure/RunControl.h>

namespace KesMeasure {

void RunControl::reset()
{
    std::lock_guard lock(_mutex);
    _isStopped = false;
}

void RunControl::stop()
{
    {
        std::lock_guard lock(_mutex);
        _isStopped = true;
    }
    _condition.notify_all();
}

bool RunControl::isStopped() const
{
    std::lock_guard lock(_mutex);
    return _isStopped;
}

} // namespace KesMeasure
