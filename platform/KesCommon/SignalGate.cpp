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

/// The longest time for which the GUI thread does not look at its queue while it waits for the gate.
constexpr std::chrono::milliseconds servingInterval{1};

struct Gate {
    std::mutex mutex;
    std::condition_variable freed;
    std::condition_variable freedForServing;
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

/// Waits on the thread that others may be waiting for. It goes before the others once the gate is free,
/// so that a stream of emissions cannot keep the window from moving.
void lockServing(Gate& gate)
{
    while (true) {
        {
            std::unique_lock lock(gate.mutex);
            const auto isFree = [&] { return gate.owner.load() == std::thread::id(); };
            gate.servingWaits = true;
            const bool freed = gate.freedForServing.wait_for(lock, servingInterval, isFree);
            gate.servingWaits = false;
            if (freed) {
                gate.owner = std::this_thread::get_id();
                return;
            }
        }
        WaitService::serve();
    }
}

void lockBlocking(Gate& gate)
{
    std::unique_lock lock(gate.mutex);
    gate.freed.wait(lock, [&] { return gate.owner.load() == std::thread::id() && !gate.servingWaits; });
    gate.owner = std::this_thread::get_id();
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
        gate.freedForServing.notify_one();
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
