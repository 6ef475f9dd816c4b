#include <KesDevice/detail/OperationTurn.h>

#include <KesCommon/ThreadWaits.h>

namespace KesDevice {

OperationTurn::Hold::Hold(OperationTurn& turn) : _turn(turn)
{
    const auto self = std::this_thread::get_id();
    std::unique_lock lock(turn._mutex);
    const auto isFree = [&] { return turn._owner == std::thread::id(); };
    const auto isLent = [&] {
        return turn._owner == self || Kes::ThreadWaits::isWaitingFor(turn._owner, self);
    };
    Kes::ThreadWaits::getCondition().wait(lock, [&] { return isFree() || isLent(); });
    _isOwn = isFree();
    if (_isOwn)
        turn._owner = self;
}

OperationTurn::Hold::~Hold()
{
    if (!_isOwn)
        return;
    {
        std::lock_guard lock(_turn._mutex);
        _turn._owner = std::thread::id();
    }
    Kes::ThreadWaits::getCondition().notifyAll();
}

bool OperationTurn::isTaken() const
{
    std::lock_guard lock(_mutex);
    return _owner != std::thread::id();
}

} // namespace KesDevice
