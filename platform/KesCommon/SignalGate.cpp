#include <KesCommon/SignalGate.h>

#include <KesCommon/WaitService.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace Kes {

namespace {

/// For how long the GUI thread waits for the gate before it turns to functions that are already queued: most
/// threads let go of it at once, and what is served runs in the midst of what the GUI thread is doing.
constexpr std::chrono::milliseconds servingDelay{1};

struct Gate {
    std::mutex mutex;
    std::condition_variable freed;
    std::atomic<std::thread::id> owner;
    bool servingWaits = false;
    /// How often the owner holds the gate; only the owner touches it.
    unsigned depth = 0;
};

/// Never destroyed: objects of static storage duration cut their connections at the end of the process.
Gate& gate()
{
    static Gate& instance = *std::make_unique<Gate>().release();
    return instance;
}

/// Takes the gate for the serving thread if it is free, and otherwise sleeps until the service's bell has
/// been rung. While the thread sleeps it goes before the others, so that a stream of emissions cannot keep
/// the window from moving; while it serves it does not, since what it serves may wait for one of the others.
bool takeServing(Gate& gate, Bell::Ticket ticket, Bell::TimePoint end)
{
    const auto tryTake = [&] {
        const bool isFree = gate.owner.load() == std::thread::id();
        if (isFree)
            gate.owner = std::this_thread::get_id();
        return isFree;
    };
    std::unique_lock lock(gate.mutex);
    if (tryTake())
        return true;
    gate.servingWaits = true;
    lock.unlock();
    WaitService::getBell().sleep(ticket, end);
    lock.lock();
    gate.servingWaits = false;
    return tryTake();
}

void lockBlocking(Gate& gate)
{
    std::unique_lock lock(gate.mutex);
    gate.freed.wait(lock, [&] { return gate.owner.load() == std::thread::id() && !gate.servingWaits; });
    gate.owner = std::this_thread::get_id();
}

void lockServing(Gate& gate)
{
    auto ticket = WaitService::getBell().getTicket();
    auto end = std::chrono::steady_clock::now() + servingDelay;
    while (!takeServing(gate, ticket, end)) {
        ticket = WaitService::getBell().getTicket();
        end = WaitService::serve() ? std::chrono::steady_clock::now() + servingDelay : Bell::never;
        if (!WaitService::isServingThread()) {
            lockBlocking(gate);
            return;
        }
    }
}

void lockFirst(Gate& gate, unsigned depth)
{
    if (WaitService::isServingThread())
        lockServing(gate);
    else
        lockBlocking(gate);
    gate.depth = depth;
}

void unlockLast(Gate& gate)
{
    gate.depth = 0;
    std::lock_guard lock(gate.mutex);
    gate.owner = std::thread::id();
    if (gate.servingWaits)
        WaitService::ring();
    else
        gate.freed.notify_one();
}

} // namespace

void SignalGate::lock()
{
    if (isHeldByThisThread())
        ++gate().depth;
    else
        lockFirst(gate(), 1);
}

void SignalGate::unlock()
{
    if (gate().depth > 1)
        --gate().depth;
    else
        unlockLast(gate());
}

bool SignalGate::isHeldByThisThread()
{
    return gate().owner.load() == std::this_thread::get_id();
}

SignalGate::Release::Release() : _depth(isHeldByThisThread() ? gate().depth : 0)
{
    if (_depth > 0)
        unlockLast(gate());
}

SignalGate::Release::~Release()
{
    if (_depth > 0)
        lockFirst(gate(), _depth);
}

SignalGate::Loan::Loan()
{
    if (isHeldByThisThread()) {
        _lender = std::this_thread::get_id();
        _depth = gate().depth;
    }
}

SignalGate::Loan::Use::Use(Loan& loan) : _loan(loan)
{
    if (_loan._depth == 0)
        return;
    gate().depth = 1;
    gate().owner = std::this_thread::get_id();
}

SignalGate::Loan::Use::~Use()
{
    if (_loan._depth == 0)
        return;
    gate().depth = _loan._depth;
    gate().owner = _loan._lender;
}

} // namespace Kes
