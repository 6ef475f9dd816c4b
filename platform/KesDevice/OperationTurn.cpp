#include <KesDevice/OperationTurn.h>

#include <KesDriver/ServingWait.h>

#include <algorithm>

namespace KesDevice {

thread_local std::vector<const OperationTurn*> OperationTurn::_mine;

OperationTurn::Hold::Hold(OperationTurn& turn) : _turn(turn)
{
    if (!turn._isMine()) {
        std::unique_lock lock(turn._mutex);
        KesDriver::servingWait(lock, turn._freed, [&] { return !turn._taken; });
        turn._taken = true;
    }
    _mine.push_back(&turn);
}

OperationTurn::Hold::~Hold()
{
    _mine.pop_back();
    if (_turn._isMine())
        return;
    std::lock_guard lock(_turn._mutex);
    _turn._taken = false;
    _turn._freed.notify_one();
}

OperationTurn::Share::Share(const OperationTurn& turn)
{
    _mine.push_back(&turn);
}

OperationTurn::Share::~Share()
{
    _mine.pop_back();
}

bool OperationTurn::isTaken() const
{
    std::lock_guard lock(_mutex);
    return _taken;
}

bool OperationTurn::_isMine() const
{
    return std::find(_mine.begin(), _mine.end(), this) != _mine.end();
}

} // namespace KesDevice
