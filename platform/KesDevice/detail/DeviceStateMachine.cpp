#include <KesDevice/detail/DeviceStateMachine.h>

#include <KesCommon/Log.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>

namespace KesDevice {

namespace {

constexpr std::size_t stateCount = 6;

constexpr unsigned bit(DeviceState state)
{
    return 1U << static_cast<unsigned>(state);
}

using enum DeviceState;

/// For each state those that it may become, in the order of the enumeration.
constexpr std::array<unsigned, stateCount> transitions = {
    bit(Connecting) | bit(Absent),
    bit(Ready) | bit(Faulty) | bit(Absent),
    bit(Working) | bit(Faulty) | bit(Lost) | bit(Absent),
    bit(Ready) | bit(Faulty) | bit(Lost) | bit(Absent),
    bit(Faulty) | bit(Ready) | bit(Connecting) | bit(Lost) | bit(Absent),
    bit(Connecting) | bit(Absent),
};

constexpr std::array<const char*, stateCount> names = {"absent",  "connecting", "ready",
                                                       "working", "faulty",     "lost"};

std::atomic<unsigned> defects{0};

std::size_t index(DeviceState state)
{
    return static_cast<std::size_t>(state);
}

} // namespace

bool isTransition(DeviceState from, DeviceState to)
{
    return (transitions[index(from)] & bit(to)) != 0;
}

unsigned countTransitionDefects()
{
    return defects;
}

std::mutex& DeviceStateMachine::getMutex()
{
    // Never destroyed: devices change their state until the very end of the process.
    static std::mutex& instance = *std::make_unique<std::mutex>().release();
    return instance;
}

bool DeviceStateMachine::change(DeviceState state, const std::string& reason)
{
    if (!isTransition(_state, state)) {
        ++defects;
        KesLog::Log::writeError(std::string("A device cannot become ") + names[index(state)] + " from " +
                                names[index(_state)] + '.');
        return false;
    }
    _state = state;
    _reason = reason;
    return true;
}

Kes::Nullable<std::string> DeviceStateMachine::getOperationError() const
{
    if (!_reason.empty())
        return _reason;
    if (_state == Ready || _state == Working)
        return std::string();
    return {};
}

} // namespace KesDevice
