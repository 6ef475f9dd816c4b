#include "FakeKestoLink.h"

#include <KesDriver/ConnectionError.h>

#include <new>

namespace KesTest {

using namespace KesDriver;

Kes::Result FakeKesto::State::connect(ConnectionNumber& number)
{
    std::unique_lock lock(mutex);
    ++calls[LinkCall::Connect];
    changed.notify_all();
    const auto before = connections;
    changed.wait(lock, [&] { return !held.contains(LinkCall::Connect) || connections != before; });
    if (connections != before)
        return ConnectionError::failure("The fake is not connected.");
    if (const auto answer = getAnswer(LinkCall::Connect); !answer)
        return ConnectionError::failure(answer.getError()->getMessage());
    number = connection = ++connections;
    return true;
}

Kes::Result FakeKesto::State::call(LinkCall call, const std::function<void()>& effect)
{
    std::unique_lock lock(mutex);
    ++calls[call];
    changed.notify_all();
    const auto begun = connection;
    changed.wait(lock, [&] { return !held.contains(call) || connection != begun; });
    if (throwing.erase(call) > 0)
        throw std::bad_alloc();
    if (dropping.erase(call) > 0)
        end();
    if (connection == 0 || connection != begun)
        return ConnectionError::failure("The fake is not connected.");
    if (auto answer = getAnswer(call); !answer)
        return answer;
    effect();
    changed.wait(lock, [&] { return !heldAnswers.contains(call) || connection != begun; });
    if (connection != begun)
        return ConnectionError::failure("The fake is not connected.");
    return true;
}

Kes::Result FakeKesto::State::getAnswer(LinkCall call) const
{
    const auto found = answers.find(call);
    return found == answers.end() ? Kes::Result(true) : found->second;
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
        next = {};
        lock.lock();
    }
}

class FakeKesto::Link : public IKestoLink {
public:
    explicit Link(std::shared_ptr<State> state) : _state(std::move(state)) {}
    ~Link() override { disconnect(); }

    void setReceiver(std::weak_ptr<IReportReceiver> receiver) override
    {
        _state->set([&] { _state->receiver = std::move(receiver); });
    }
    Kes::Result connect(ConnectionNumber& connection) override { return _state->connect(connection); }
    void disconnect() override
    {
        // Also ends an attempt under way.
        _state->set([this] {
            _state->end();
            ++_state->connections;
        });
    }
    Kes::Result identify(KestoIdentity& identity) override
    {
        return _state->call(LinkCall::Identify, [&] { identity = _state->identity; });
    }
    Kes::Result readState(KestoState& state) override
    {
        return _state->call(LinkCall::ReadState, [&] { state = _state->state; });
    }
    Kes::Result readLimits(OutputLimits& limits) override
    {
        limits = _state->get(_state->limits);
        return true;
    }
    Kes::Result readTime(DeviceTime& time) override
    {
        time = std::chrono::duration_cast<DeviceTime>(std::chrono::steady_clock::now().time_since_epoch());
        return true;
    }
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
    Kes::Result runSequence(const OutputSequence&) override
    {
        return _state->call(LinkCall::RunSequence, [] {});
    }
    Kes::Result stopOutputs() override
    {
        return _state->call(LinkCall::StopOutputs, [] {});
    }
    Kes::Result armSequence(const OutputSequence&) override { return true; }
    Kes::Result startArmed(const StartMoment&) override { return true; }
    Kes::Result readClock(ClockReading&) override { return true; }

private:
    const std::shared_ptr<State> _state;
};

FakeKesto::~FakeKesto()
{
    _state->set([this] {
        _state->stopping = true;
        _state->held.clear();
        _state->heldAnswers.clear();
    });
    _thread.join();
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
    return _report(_state->get(_state->connection), std::move(report));
}

std::future<void> FakeKesto::_report(ConnectionNumber connection, Report report)
{
    std::packaged_task<void()> task([state = _state.get(), connection, report = std::move(report)] {
        if (const auto receiver = state->get(state->receiver).lock())
            receiver->receive(connection, report);
    });
    auto done = task.get_future();
    _state->set([&] { _state->reports.push(std::move(task)); });
    return done;
}

} // namespace KesTest
