#include <KesDevice/detail/AddressHold.h>

#include <KesCommon/WaitCondition.h>

#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace KesDevice {

namespace {

constexpr std::chrono::seconds longestHold{3};

struct Holds {
    std::mutex mutex;
    Kes::WaitCondition freed;
    std::map<KesDriver::NetAddress, unsigned> counts;
};

/// Never destroyed: configurations let go of their devices until the very end of the process.
Holds& holds()
{
    static Holds& instance = *std::make_unique<Holds>().release();
    return instance;
}

} // namespace

AddressHold::AddressHold(const KesDriver::NetAddress& address) : _address(address)
{
    std::lock_guard lock(holds().mutex);
    ++holds().counts[address];
}

AddressHold::AddressHold(AddressHold&& other) noexcept
    : _address(other._address), _isHeld(std::exchange(other._isHeld, false))
{}

AddressHold::~AddressHold()
{
    if (!_isHeld)
        return;
    std::lock_guard lock(holds().mutex);
    if (--holds().counts[_address] == 0)
        holds().counts.erase(_address);
    holds().freed.notifyAll();
}

AddressHold AddressHold::take(const KesDriver::NetAddress& address, const std::function<bool()>& isWanted)
{
    std::unique_lock lock(holds().mutex);
    holds().freed.waitUntil(lock, std::chrono::steady_clock::now() + longestHold,
                            [&] { return !holds().counts.contains(address) || !isWanted(); });
    // In the same step, or two who have waited would both continue.
    ++holds().counts[address];
    return {address, IsCounted()};
}

void AddressHold::notify()
{
    std::lock_guard lock(holds().mutex);
    holds().freed.notifyAll();
}

} // namespace KesDevice
