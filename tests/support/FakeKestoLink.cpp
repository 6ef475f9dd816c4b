#include "FakeKestoLink.h"

#include <KesCommon/ThreadHelper.h>
#include <KesDriver/ServingWait.h>

#include <algorithm>
#include <chrono>
#include <set>
#include <utility>

namespace KesTest {

using namespace KesDriver;

namespace {

constexpr std::chrono::seconds longestWait{10};

} // namespace

struct FakeKesto::State {
    mutable std::mutex mutex;
    mutable std::condition_variable changed;

    KestoIdentifer identifer{3, 17};
    KestoState state{true, false, 0.0, {}};
    OutputLimits limits;
    bool isSimulated = false;
    DeviceTime time{0};
    std::map<LinkCall, std::string> failures;
    std::set<LinkCall> held;
    std::map<LinkCall, std::function<void()>> hooks;

    std::vector<LinkCall> calls;
    bool isConnected = false;
    bool isWorking = false;
    OutputState outputs;
    std::vector<OutputSequence> sequences;
    double auxDCVolts = 0.0;

    IKestoLinkListener* listener = nullptr;
    std::queue<std::packaged_task<void()>> reports;
    std::thread::id deliverer;
    bool stopping = false;

    Kes::Result call(LinkCall call, const std::function<void()>& effect)
    {
        std::function<void()> hook;
        {
            std::unique_lock lock(mutex);
            calls.push_back(call);
            changed.notify_all();
            changed.wait(lock, [&] { return !held.contains(call); });
            if (const auto found = hooks.find(call); found != hooks.end())
                hook = found->second;
        }
        if (hook)
            hook();
        std::lock_guard lock(mutex);
        if (const auto found = failures.find(call); found != failures.end())
            return Kes::Result::failure(found->second);
        effect();
        return true;
    }

    void deliver(const Report& report)
    {
        IKestoLinkListener* receiver = nullptr;
        {
            std::lock_guard lock(mutex);
            receiver = listener;
            deliverer = receiver ? std::this_thread::get_id() : std::thread::id();
        }
        if (!receiver)
            return;
        report(*receiver);
        std::lock_guard lock(mutex);
        deliverer = std::thread::id();
        changed.notify_all();
    }

    void run()
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

    template <typename Field>
    auto get(const Field& field) const
    {
        std::lock_guard lock(mutex);
        return field;
    }
    template <typename Change>
    void set(Change change)
    {
        std::lock_guard lock(mutex);
        change();
        changed.notify_all();
    }
};

class FakeKesto::Link : public IKestoLink {
public:
    explicit Link(std::shared_ptr<State> state) : _state(std::move(state)) {}
    ~Link() override { setListener(nullptr); }

    bool isSimulated() const override { return _state->get(_state->isSimulated); }

    Kes::Result connect() override
    {
        return _state->call(LinkCall::Connect, [this] { _state->isConnected = true; });
    }
    void disconnect() override
    {
        (void)_state->call(LinkCall::Disconnect, [this] { _state->isConnected = _state->isWorking = false; });
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
    OutputLimits getLimits() const override { return _state->get(_state->limits); }

    Kes::Result setAuxDC(bool enable, double volts) override
    {
        return _state->call(LinkCall::SetAuxDC, [&] {
            _state->state.isAuxDCEnabled = enable;
            _state->state.auxDCVolts = enable ? volts : 0.0;
            _state->auxDCVolts = volts;
        });
    }
    Kes::Result startWorkingMode() override
    {
        return _state->call(LinkCall::StartWorkingMode, [this] { _state->isWorking = true; });
    }
    Kes::Result stopWorkingMode() override
    {
        return _state->call(LinkCall::StopWorkingMode, [this] {
            _state->isWorking = false;
            _state->outputs = {};
        });
    }
    Kes::Result setOutputs(const OutputState& outputs) override
    {
        return _state->call(LinkCall::SetOutputs, [&] { _state->outputs = outputs; });
    }
    Kes::Result runSequence(const OutputSequence& sequence) override
    {
        return _state->call(LinkCall::RunSequence, [&] { _state->sequences.push_back(sequence); });
    }
    Kes::Result stopOutputs() override
    {
        return _state->call(LinkCall::StopOutputs, [this] { _state->outputs = {}; });
    }
    DeviceTime getTime() const override { return _state->get(_state->time); }

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

FakeKesto::FakeKesto() : _state(std::make_shared<State>()), _thread([state = _state] { state->run(); }) {}

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

void FakeKesto::setIdentifer(KestoIdentifer identifer)
{
    _state->set([&] { _state->identifer = identifer; });
}

void FakeKesto::setState(KestoState state)
{
    _state->set([&] { _state->state = std::move(state); });
}

void FakeKesto::setLimits(OutputLimits limits)
{
    _state->set([&] { _state->limits = limits; });
}

void FakeKesto::setSimulated(bool simulated)
{
    _state->set([&] { _state->isSimulated = simulated; });
}

void FakeKesto::setTime(DeviceTime time)
{
    _state->set([&] { _state->time = time; });
}

void FakeKesto::fail(LinkCall call, const std::string& text)
{
    _state->set([&] {
        if (text.empty())
            _state->failures.erase(call);
        else
            _state->failures[call] = text;
    });
}

void FakeKesto::hold(LinkCall call)
{
    _state->set([&] { _state->held.insert(call); });
}

void FakeKesto::release(LinkCall call)
{
    _state->set([&] { _state->held.erase(call); });
}

void FakeKesto::onCall(LinkCall call, std::function<void()> hook)
{
    _state->set([&] { _state->hooks[call] = std::move(hook); });
}

std::vector<LinkCall> FakeKesto::getCalls() const
{
    return _state->get(_state->calls);
}

std::size_t FakeKesto::countCalls(LinkCall call) const
{
    const auto calls = getCalls();
    return static_cast<std::size_t>(std::count(calls.begin(), calls.end(), call));
}

bool FakeKesto::waitForCall(LinkCall call, std::size_t count) const
{
    std::unique_lock lock(_state->mutex);
    return _state->changed.wait_for(lock, longestWait, [&] {
        const auto& calls = _state->calls;
        return static_cast<std::size_t>(std::count(calls.begin(), calls.end(), call)) >= count;
    });
}

bool FakeKesto::isConnected() const
{
    return _state->get(_state->isConnected);
}

bool FakeKesto::isWorking() const
{
    return _state->get(_state->isWorking);
}

OutputState FakeKesto::getOutputs() const
{
    return _state->get(_state->outputs);
}

std::vector<OutputSequence> FakeKesto::getSequences() const
{
    return _state->get(_state->sequences);
}

bool FakeKesto::isAuxDCEnabled() const
{
    return _state->get(_state->state.isAuxDCEnabled);
}

double FakeKesto::getAuxDCVolts() const
{
    return _state->get(_state->auxDCVolts);
}

std::future<void> FakeKesto::report(Report report)
{
    std::packaged_task<void()> task(
        [state = _state.get(), report = std::move(report)] { state->deliver(report); });
    auto done = task.get_future();
    _state->set([&] { _state->reports.push(std::move(task)); });
    return done;
}

std::future<void> FakeKesto::reportInput(unsigned input, bool isClosed, DeviceTime time)
{
    return report([=](IKestoLinkListener& listener) { listener.onInput({input, isClosed, time}); });
}

std::future<void> FakeKesto::reportStep(std::size_t step, DeviceTime time)
{
    return report([=](IKestoLinkListener& listener) { listener.onStep({step, time}); });
}

std::future<void> FakeKesto::reportSequenceFinished(bool isComplete, DeviceTime time)
{
    return report([=](IKestoLinkListener& listener) { listener.onSequenceFinished({isComplete, time}); });
}

std::future<void> FakeKesto::reportAvary(KesAvary avary)
{
    return report([avary = std::move(avary)](IKestoLinkListener& listener) { listener.onAvary(avary); });
}

std::future<void> FakeKesto::reportConnectionLost()
{
    _state->set([this] { _state->isConnected = _state->isWorking = false; });
    return report([](IKestoLinkListener& listener) { listener.onConnectionLost(); });
}

} // namespace KesTest
