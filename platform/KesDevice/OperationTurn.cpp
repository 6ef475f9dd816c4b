#include <KesDevice/OperationTurn.h>

#include <KesDriver/ServingWait.h>

namespace KesDevice {

namespace {

/// The innermost `Mine` of the thread.
thread_local const void* innermost = nullptr;

} // namespace

OperationTurn::Mine::Mine(const OperationTurn& turn)
    : _turn(turn), _previous(static_cast<const Mine*>(innermost))
{
    innermost = this;
}

OperationTurn::Mine::~Mine()
{
    innermost = _previous;
}

bool OperationTurn::Mine::isHeld(const OperationTurn& turn)
{
    for (const auto* mine = static_cast<const Mine*>(innermost); mine; mine = mine->_previous)
        if (&mine->_turn == &turn)
            return true;
    return false;
}

OperationTurn::Hold::Hold(OperationTurn& turn) : _turn(turn)
{
    if (Mine::isHeld(turn))
        return;
    std::unique_lock lock(turn._mutex);
    KesDriver::servingWait(lock, turn._freed, [&] { return !turn._taken; });
    turn._taken = true;
    _mine.emplace(turn);
}

OperationTurn::Hold::~Hold()
{
    if (!_mine)
        return;
    std::lock_guard lock(_turn._mutex);
    _mine.reset();
    _turn._taken = false;
    _turn._freed.notify_all();
}

bool OperationTurn::isTaken() const
{
    std::lock_guard lock(_mutex);
    return _taken;
}

} // namespace KesDevice
