#include "FakeKestoLink.h"

#include <KesCommon/ThreadHelper.h>
#include <KesDriver/ServingWait.h>

namespace KesTest {

using namespace KesDriver;

Kes::Result FakeKesto::State::call(LinkCall call, const std::function<void()>& effect)
{
    std::unique_lock lock(mutex);
    ++calls[call];
    changed.notify_all();
    changed.wait(lock, [&] { return !held.contains(call); });
    if (!failures[call].empty())
        return Kes::Result::failure(failures[call]);
    effect();
    return true;
}

void FakeKesto::State::deliver(const Report& report)
{
    std::unique_lock lock(mutex);
    auto* receiver = listener;
    if (!receiver)
        return;
    deliverer = std::this_thread::get_id();
    lock.unlock();
    report(*receiver);
    lock.lock();
    deliverer = std::thread::id();
    changed.notify_all();
}

void FakeKesto::State::run()
{
    std::unique_lock lock(mutex);
    while (true) {
        changed.wait(lock, [&] { return stopping || !reports.empty(); });
        if (reports.empty())
            return;
        auto next = std::move(reports.front());
        reports.pop();
        lock.unlock();
        next();
        lock.lock();
    }
}

class FakeKesto::Link : public IKestoLink {
public:
    explicit Link(std::shared_ptr<State> state) : _state(std::move(state)) {}
    ~Link() override { setListener(nullptr); }

    bool isSimulated() const override { return false; }
    Kes::Result connect() override
    {
        return _state->call(LinkCall::Connect, [this] { _state->isConnected = true; });
    }
    void disconnect() override
    {
        _state->set([this] { _state->isConnected = _state->isWorking = false; });
    }
    bool isConnected() const override { return _state->get(_state->isConnected); }
    Kes::Result identify(KestoIdentifer& identifer) override
    {
        return _state->call(LinkCall::Identify, [&] { identifer = _state->identifer; });
    }
    Kes::Result readState(KestoState& state) override
    {
        return _state->call(LinkCall::ReadState, [&] { state = _state->state; });
    }
    OutputLimits getLimits() const override { return {}; }
    Kes::Result setAuxDC(bool enable, double volts) override
    {
        return _state->call(LinkCall::SetAuxDC, [&] {
            _state->state.isAuxDCEnabled = enable;
            _state->state.auxDCVolts = enable ? volts : 0.0;
        });
    }
    Kes::Result startWorkingMode() override
    {
        return _state->call(LinkCall::StartWorkingMode, [this] { _state->isWorking = true; });
    }
    Kes::Result stopWorkingMode() override
    {
        return _state->call(LinkCall::StopWorkingMode, [this] { _state->isWorking = false; });
    }
    Kes::Result setOutputs(const OutputState&) override
    {
        return _state->call(LinkCall::SetOutputs, [] {});
    }
    Kes::Result runSequence(const OutputSequence&) override { return true; }
    Kes::Result stopOutputs() override
    {
        return _state->call(LinkCall::StopOutputs, [] {});
    }
    DeviceTime getTime() const override { return DeviceTime(0); }

    void setListener(IKestoLinkListener* listener) override
    {
        std::unique_lock lock(_state->mutex);
        _state->listener = listener;
        servingWait(lock, _state->changed, [this] {
            return _state->deliverer == std::thread::id() || _state->deliverer == std::this_thread::get_id();
        });
    }

private:
    const std::shared_ptr<State> _state;
};

FakeKesto::~FakeKesto()
{
    _state->set([this] {
        _state->stopping = true;
        _state->held.clear();
    });
    Kes::ThreadHelper::join(_thread);
}

std::unique_ptr<IKestoLink> FakeKesto::createLink()
{
    return std::make_unique<Link>(_state);
}

std::size_t FakeKesto::countCalls(LinkCall call) const
{
    std::lock_guard lock(_state->mutex);
    return _state->calls[call];
}

bool FakeKesto::waitForCall(LinkCall call, std::size_t count) const
{
    std::unique_lock lock(_state->mutex);
    return _state->changed.wait_for(lock, std::chrono::seconds(10),
                                    [&] { return _state->calls[call] >= count; });
}

std::future<void> FakeKesto::report(Report report)
{
    std::packaged_task<void()> task(
        [state = _state.get(), report = std::move(report)] { state->deliver(report); });
    auto done = task.get_future();
    _state->set([&] { _state->reports.push(std::move(task)); });
    return done;
}

} // namespace KesTest
