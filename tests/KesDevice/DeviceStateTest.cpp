// Two threads at one device, and what happens to it meanwhile: every state, every operation held in its
// middle, and everything else at that moment. Afterwards the state is one that the two lead to, and the
// device agrees.

#include "TestBench.h"

#include <KesDevice/DeviceState.h>

#include <algorithm>
#include <future>
#include <iostream>
#include <optional>
#include <set>

namespace KesTest {
namespace {

using enum DeviceState;

constexpr std::array states = {Absent, Connecting, Ready, Working, Faulty, Lost};

TEST(DeviceStates, PassFromOneToTheOtherAsTheTableSays)
{
    const std::map<DeviceState, std::set<DeviceState>> table = {
        {Absent, {Connecting, Absent}},
        {Connecting, {Ready, Faulty, Absent}},
        {Ready, {Working, Faulty, Lost, Absent}},
        {Working, {Ready, Faulty, Lost, Absent}},
        {Faulty, {Faulty, Ready, Connecting, Lost, Absent}},
        {Lost, {Connecting, Absent}},
    };
    for (const auto from : states)
        for (const auto to : states)
            EXPECT_EQ(isTransition(from, to), table.at(from).contains(to))
                << static_cast<int>(from) << " to " << static_cast<int>(to);
}

enum class Action {
    Connect,
    UpdateState,
    StartWorkingMode,
    StopWorkingMode,
    SetOutputs,
    StopOutputs,
    Disconnect,
    // What happens to the device.
    Fault,
    Loss,
    Nonsense
};
using enum Action;

constexpr std::array operations = {Connect,    UpdateState, StartWorkingMode, StopWorkingMode,
                                   SetOutputs, StopOutputs, Disconnect};
constexpr std::array actions = {Connect,    UpdateState, StartWorkingMode, StopWorkingMode,
                                SetOutputs, StopOutputs, Disconnect,       Fault,
                                Loss,       Nonsense};

const char* name(Action action)
{
    constexpr std::array names = {"connect",    "updateState", "startWorkingMode", "stopWorkingMode",
                                  "setOutputs", "stopOutputs", "disconnect",       "a fault",
                                  "a loss",     "nonsense"};
    return names[static_cast<std::size_t>(action)];
}

/// Where a device may stand; a faulty one may be connected or let go of.
enum class Stand { Absent, Connecting, Ready, Working, Faulty, LetGo, Lost };

constexpr std::array stands = {Stand::Absent, Stand::Connecting, Stand::Ready, Stand::Working,
                               Stand::Faulty, Stand::LetGo,      Stand::Lost};

std::ostream& operator<<(std::ostream& out, Stand stand)
{
    constexpr std::array names = {"absent", "connecting", "ready", "working", "faulty", "let go", "lost"};
    return out << names[static_cast<std::size_t>(stand)];
}

Stand standOf(const Kesto& kesto)
{
    switch (kesto.getState()) {
    case Absent:
        return Stand::Absent;
    case Connecting:
        return Stand::Connecting;
    case Ready:
        return Stand::Ready;
    case Working:
        return Stand::Working;
    case Faulty:
        return kesto.isConnected() ? Stand::Faulty : Stand::LetGo;
    default:
        return Stand::Lost;
    }
}

bool isConnected(Stand stand)
{
    return stand == Stand::Ready || stand == Stand::Working || stand == Stand::Faulty;
}

/// Where one action after the other leads. The fake's own state is always ready.
Stand lead(Stand from, Action action)
{
    switch (action) {
    case Connect:
        return isConnected(from) ? from : Stand::Ready;
    case UpdateState:
        return from == Stand::Working ? from : Stand::Ready;
    case StartWorkingMode:
        return from == Stand::Ready ? Stand::Working : from;
    case StopWorkingMode:
        return from == Stand::Working ? Stand::Ready : from;
    case Disconnect:
        return Stand::Absent;
    case Fault:
        return isConnected(from) ? Stand::Faulty : from;
    case Loss:
        return isConnected(from) ? Stand::Lost : from;
    case Nonsense:
        return isConnected(from) ? Stand::LetGo : from;
    default:
        return from;
    }
}

/// All that two actions lead to, in any order. Those that are under way in the same moment may lead to what
/// neither order does: an attempt to connect fails when something happens to the device.
std::set<Stand> leadAll(Stand from, std::vector<Action> both)
{
    const auto has = [&](Action action) { return std::ranges::count(both, action) > 0; };
    std::set<Stand> found;
    if (from == Stand::Connecting) {
        both.push_back(Connect);
        from = Stand::Absent;
    }
    const bool isConnecting = has(Connect) || has(UpdateState);
    if (isConnecting && (has(Loss) || has(Nonsense) || has(Disconnect)))
        found.insert(Stand::Absent);
    std::ranges::sort(both);
    do {
        auto stand = from;
        for (const auto action : both)
            stand = lead(stand, action);
        found.insert(stand);
    } while (std::ranges::next_permutation(both).found);
    return found;
}

/// The call of the link that an operation is held in.
std::optional<LinkCall> getCall(Action action)
{
    switch (action) {
    case Connect:
        return LinkCall::Identify;
    case UpdateState:
        return LinkCall::ReadState;
    case StartWorkingMode:
        return LinkCall::StartWorkingMode;
    case StopWorkingMode:
        return LinkCall::StopWorkingMode;
    case SetOutputs:
        return LinkCall::SetOutputs;
    case StopOutputs:
        return LinkCall::StopOutputs;
    default:
        return std::nullopt;
    }
}

KesDriver::KesAvary overload()
{
    KesDriver::KesAvary avary;
    avary.kestoType = 3;
    avary.serialNumber = 17;
    avary.channels = {{"IA", false, false, true}};
    return avary;
}

constexpr KesDriver::InputEvent nonsense{4000000000U, true, KesDriver::DeviceTime(1), {}};

/// A device in a configuration, and what is told of it.
class Device {
public:
    Device()
    {
        hardware->signalAvary.connect([this](KesDriver::KesAvary&) { ++told; });
        hardware->signalKestoState.connect([this](Kesto*, const char*) { ++told; });
    }

    Kes::Result act(Action action)
    {
        switch (action) {
        case Connect:
            return kesto->connect();
        case UpdateState:
            return kesto->updateState();
        case StartWorkingMode:
            return kesto->startWorkingMode();
        case StopWorkingMode:
            return kesto->stopWorkingMode();
        case SetOutputs:
            return kesto->setOutputs({});
        case StopOutputs:
            return kesto->stopOutputs();
        case Disconnect:
            kesto->disconnect();
            return true;
        case Fault:
            fake.report(overload()).wait();
            return true;
        case Loss:
            fake.reportConnectionLost().wait();
            return true;
        case Nonsense:
            fake.report(nonsense).wait();
            return true;
        }
        return false;
    }
    std::future<Kes::Result> begin(Action action)
    {
        return std::async(std::launch::async, [this, action] { return act(action); });
    }
    /// Ready, then what leads there.
    void bring(Stand stand)
    {
        const bool isConnecting = stand != Stand::Absent && stand != Stand::Connecting;
        EXPECT_TRUE(!isConnecting || kesto->connect());
        EXPECT_TRUE(stand != Stand::Working || kesto->startWorkingMode());
        if (stand == Stand::Faulty)
            (void)act(Fault);
        if (stand == Stand::LetGo)
            (void)act(Nonsense);
        if (stand == Stand::Lost)
            (void)act(Loss);
        told = 0;
    }

    FakeKesto fake;
    std::unique_ptr<HardwareManager> hardware = HardwareManager::create();
    std::shared_ptr<Kesto> kesto = add(*hardware, fake, 2)->shared_from_this();
    std::atomic<int> told{0};
};

bool isReady(const std::future<Kes::Result>& future)
{
    return future.wait_for(0ms) == std::future_status::ready;
}

enum class Hold { Call, Answer };

/// One cell of the grid.
struct Case {
    Stand stand;
    Action first;
    Action second;
    Hold hold;
};

std::ostream& operator<<(std::ostream& out, const Case& cell)
{
    return out << cell.stand << ", " << name(cell.first)
               << (cell.hold == Hold::Call ? " held before" : " held after") << " the device does it, "
               << name(cell.second);
}

class TwoThreads {
public:
    explicit TwoThreads(const Case& cell) : _cell(cell) {}

    void run()
    {
        _device.bring(_cell.stand);
        _wasConnected = _device.kesto->isConnected();
        if (_cell.stand == Stand::Connecting)
            _attempt = _beginHeld(Connect);
        auto first = _beginHeld(_cell.first);
        const auto before = _countCalls(_cell.second);
        auto second = _device.begin(_cell.second);
        _waitUntilItStands(second, _cell.second, before);
        for (const auto call : _held)
            _device.fake.release(call);
        _end(first, _firstResult);
        _end(second, _secondResult);
        if (_attempt.valid())
            _end(_attempt, _attemptResult);
        _check();
    }

private:
    std::future<Kes::Result> _beginHeld(Action action)
    {
        const auto call = getCall(action);
        if (!call)
            return _device.begin(action);
        _held.insert(*call);
        if (_cell.hold == Hold::Call)
            _device.fake.hold(*call);
        else
            _device.fake.holdAnswer(*call);
        const auto before = _device.fake.countCalls(*call);
        auto begun = _device.begin(action);
        _waitUntilItStands(begun, action, before);
        return begun;
    }
    std::size_t _countCalls(Action action) const
    {
        const auto call = getCall(action);
        return call ? _device.fake.countCalls(*call) : 0;
    }
    /// Until the operation has ended or stands in its call.
    void _waitUntilItStands(const std::future<Kes::Result>& begun, Action action, std::size_t callsBefore)
    {
        const auto call = getCall(action);
        const auto hasCome = [&] {
            return isReady(begun) ||
                   (call && _held.contains(*call) && _device.fake.countCalls(*call) > callsBefore);
        };
        // One that waits for the other thread cannot be seen to do so; it is given a moment.
        int tries = _mayWait(action) ? 3 : 10000;
        while (!hasCome() && --tries > 0)
            std::this_thread::sleep_for(1ms);
        EXPECT_TRUE(_mayWait(action) || hasCome());
    }
    /// Whether an operation waits for those that are under way.
    bool _mayWait(Action action) const
    {
        if (action == StartWorkingMode)
            return _held.contains(LinkCall::StopWorkingMode);
        // A device that talks nonsense is told to stop.
        if (action == Nonsense)
            return _held.contains(LinkCall::StopOutputs);
        return (action == Connect || action == UpdateState) && !_wasConnected;
    }

    static void _end(std::future<Kes::Result>& future, Kes::Result& result)
    {
        if (future.wait_for(10s) == std::future_status::ready) {
            result = future.get();
            return;
        }
        // Nothing can be destroyed any more.
        std::cerr << "An operation hangs.\n";
        std::abort();
    }

    void _check()
    {
        const auto stand = standOf(*_device.kesto);
        EXPECT_THAT(leadAll(_cell.stand, {_cell.first, _cell.second}), testing::Contains(stand));
        EXPECT_EQ(_device.fake.isConnected(), isConnected(stand)) << stand;
        // A faulty one that is connected is switched off by whoever switched it on.
        EXPECT_TRUE(stand == Stand::Faulty || _device.fake.isWorking() == (stand == Stand::Working)) << stand;
        _checkTexts();
        EXPECT_TRUE(_device.kesto->stopWorkingMode());
        EXPECT_FALSE(_device.fake.isWorking());
    }
    void _checkTexts()
    {
        const bool isEvent = _cell.second == Fault || _cell.second == Loss || _cell.second == Nonsense;
        EXPECT_LE(_device.told, isEvent ? 1 : 0);
        const bool isTold = _device.told > 0 || !_firstResult || !_attemptResult;
        // What has come too late for the connection it happened to is of no interest any more.
        const bool isOfInterest = isEvent && _wasConnected && _cell.first != Disconnect;
        const bool isKnown = _cell.stand == Stand::Faulty && _cell.second == Fault;
        EXPECT_TRUE(isTold || isKnown || !isOfInterest);
    }

    const Case _cell;
    Device _device;
    std::set<LinkCall> _held;
    std::future<Kes::Result> _attempt;
    Kes::Result _attemptResult = true;
    Kes::Result _firstResult = false;
    Kes::Result _secondResult = false;
    bool _wasConnected = false;
};

TEST(TwoThreadsAtOneDevice, LeadToAStateThatTheDeviceAgreesWith)
{
    const auto defects = countTransitionDefects();
    for (const auto stand : stands)
        for (const auto first : operations)
            for (const auto second : actions)
                for (const auto hold : {Hold::Call, Hold::Answer}) {
                    const Case cell{stand, first, second, hold};
                    SCOPED_TRACE(testing::PrintToString(cell));
                    TwoThreads(cell).run();
                }
    EXPECT_EQ(countTransitionDefects(), defects);
}

// One cause, one text, also when it comes while an operation of the configuration is under way.

class OneCause : public testing::TestWithParam<std::tuple<LinkCall, Action>> {
protected:
    OneCause()
    {
        hardware->signalAvary.connect([this](KesDriver::KesAvary&) { ++told; });
        hardware->signalKestoState.connect([this](Kesto*, const char*) { ++told; });
    }
    bool note(const Kes::Result& result)
    {
        told += static_cast<int>(!result);
        return result;
    }
    /// What a program does, as far as it gets.
    void run()
    {
        if (note(hardware->prepare()))
            note(hardware->startWorkingMode());
        note(hardware->stopWorkingMode());
    }
    void happen(Action what)
    {
        if (what == Fault)
            first.report(overload()).wait();
        else if (what == Loss)
            first.reportConnectionLost().wait();
        else
            first.report(nonsense).wait();
        // A device that is still faulty says so when it is asked.
        if (what == Fault)
            first.setState({false, false, 0.0, "Overload"});
    }

    FakeKesto first;
    FakeKesto second;
    std::unique_ptr<HardwareManager> hardware = HardwareManager::create();
    std::atomic<int> told{0};
};

TEST_P(OneCause, IsToldOnceInARun)
{
    const auto [call, what] = GetParam();
    const auto kesto = add(*hardware, first, 2);
    add(*hardware, second, 3);
    // The first device has done its part, and the second one stands in the middle of it.
    second.hold(call);
    auto running = std::async(std::launch::async, [this] { run(); });
    ASSERT_TRUE(second.waitForCall(call));
    const auto wanted = call == LinkCall::StartWorkingMode ? Working : Ready;
    ASSERT_TRUE(waitUntil([&] { return kesto->getState() == wanted; }));
    happen(what);
    second.release(call);
    running.get();
    EXPECT_EQ(told, 1);
    EXPECT_FALSE(hardware->isOutputRunning() || first.isWorking() || second.isWorking());
}

INSTANTIATE_TEST_SUITE_P(Moments, OneCause,
                         testing::Combine(testing::Values(LinkCall::Identify, LinkCall::StartWorkingMode,
                                                          LinkCall::StopWorkingMode),
                                          testing::Values(Fault, Loss, Nonsense)));

} // namespace
} // namespace KesTest
