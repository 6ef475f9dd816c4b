// Two threads at one device, and what happens to it meanwhile: every state, every operation held in its
// middle, and everything else at that moment. Afterwards the state is one that the two lead to, and the
// device agrees.

#include "DeviceActions.h"

#include <KesDevice/DeviceState.h>

#include <algorithm>
#include <iostream>
#include <span>

namespace KesTest {
namespace {

using Do = const DeviceAction*;

constexpr std::array<Do, 10> actions = {
    &Actions::connect,    &Actions::updateState, &Actions::startWorkingMode, &Actions::stopWorkingMode,
    &Actions::setOutputs, &Actions::stopOutputs, &Actions::disconnect,       &Actions::fault,
    &Actions::loss,       &Actions::nonsense};
/// The others happen to a device.
constexpr auto operations = std::span(actions).first<7>();

/// Where a device may stand: in one of its states; a faulty one may be connected or let go of.
using Stand = std::string_view;
constexpr Stand absent = "absent", connecting = "connecting", ready = "ready", working = "working",
                faulty = "faulty", lost = "lost", letGo = "let go";

Stand standOf(const Kesto& kesto)
{
    constexpr std::array stands = {absent, connecting, ready, working, faulty, lost};
    const auto stand = stands.at(static_cast<std::size_t>(kesto.getState()));
    return stand == faulty && !kesto.isConnected() ? letGo : stand;
}

bool isConnected(Stand stand)
{
    return stand == ready || stand == working || stand == faulty;
}

/// Where one action after the other leads. The fake's own state is always ready.
Stand lead(Stand from, Do action)
{
    if (action == &Actions::connect)
        return isConnected(from) ? from : ready;
    if (action == &Actions::updateState)
        return from == working ? from : ready;
    if (action == &Actions::startWorkingMode)
        return from == ready ? working : from;
    if (action == &Actions::stopWorkingMode)
        return from == working ? ready : from;
    if (action == &Actions::disconnect)
        return absent;
    if (action->call || !isConnected(from))
        return from;
    return action == &Actions::fault ? faulty : action == &Actions::loss ? lost : letGo;
}

/// All that two actions lead to, in any order. Those that are under way in the same moment may lead to what
/// neither order does: an attempt to connect fails when something happens to the device.
std::set<Stand> leadAll(Stand from, std::vector<Do> both)
{
    const auto has = [&](Do action) { return std::ranges::count(both, action) > 0; };
    std::set<Stand> found;
    if (from == connecting) {
        both.push_back(&Actions::connect);
        from = absent;
    }
    const bool isConnecting = has(&Actions::connect) || has(&Actions::updateState);
    if (isConnecting && (has(&Actions::loss) || has(&Actions::nonsense) || has(&Actions::disconnect)))
        found.insert(absent);
    std::ranges::sort(both);
    do {
        auto stand = from;
        for (const auto action : both)
            stand = lead(stand, action);
        found.insert(stand);
    } while (std::ranges::next_permutation(both).found);
    return found;
}

/// What leads to each of them; an attempt to connect is begun later.
const std::map<Stand, std::vector<Do>> ways = {
    {absent, {}},
    {connecting, {}},
    {ready, {&Actions::connect}},
    {working, {&Actions::connect, &Actions::startWorkingMode}},
    {faulty, {&Actions::connect, &Actions::fault}},
    {letGo, {&Actions::connect, &Actions::nonsense}},
    {lost, {&Actions::connect, &Actions::loss}},
};

/// A device in a configuration, and what is told of it.
struct Device {
    Device()
    {
        hardware->signalAvary.connect([this](KesDriver::KesAvary&) { ++told; });
        hardware->signalKestoState.connect([this](Kesto*, const char*) { ++told; });
    }
    std::future<Kes::Result> begin(Do action)
    {
        return std::async(std::launch::async, [this, action] { return action->run(*kesto, fake); });
    }
    void bring(Stand stand)
    {
        for (const auto action : ways.at(stand))
            EXPECT_TRUE(action->run(*kesto, fake));
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
    Do first;
    Do second;
    Hold hold;
};

class TwoThreads {
public:
    explicit TwoThreads(const Case& cell) : _cell(cell) {}

    void run()
    {
        _device.bring(_cell.stand);
        _wasConnected = _device.kesto->isConnected();
        if (_cell.stand == connecting)
            _attempt = _beginHeld(&Actions::connect);
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
    std::future<Kes::Result> _beginHeld(Do action)
    {
        const auto call = action->call;
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
    std::size_t _countCalls(Do action) const
    {
        const auto call = action->call;
        return call ? _device.fake.countCalls(*call) : 0;
    }
    /// Until the operation has ended or stands in its call.
    void _waitUntilItStands(const std::future<Kes::Result>& begun, Do action, std::size_t callsBefore)
    {
        const auto call = action->call;
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
    bool _mayWait(Do action) const
    {
        if (action == &Actions::startWorkingMode)
            return _held.contains(LinkCall::StopWorkingMode);
        // A device that talks nonsense is told to stop.
        if (action == &Actions::nonsense)
            return _held.contains(LinkCall::StopOutputs);
        return (action == &Actions::connect || action == &Actions::updateState) && !_wasConnected;
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
        EXPECT_TRUE(stand == faulty || _device.fake.isWorking() == (stand == working)) << stand;
        _checkTexts();
        EXPECT_TRUE(_device.kesto->stopWorkingMode());
        EXPECT_FALSE(_device.fake.isWorking());
    }
    void _checkTexts()
    {
        const bool isEvent = std::ranges::count(operations, _cell.second) == 0;
        EXPECT_LE(_device.told, isEvent ? 1 : 0);
        const bool isTold = _device.told > 0 || !_firstResult || !_attemptResult;
        // What has come too late for the connection it happened to is of no interest any more.
        const bool isOfInterest = isEvent && _wasConnected && _cell.first != &Actions::disconnect;
        const bool isKnown = _cell.stand == faulty && _cell.second == &Actions::fault;
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
    for (const auto& [stand, way] : ways)
        for (const auto first : operations)
            for (const auto second : actions)
                for (const auto hold : {Hold::Call, Hold::Answer}) {
                    SCOPED_TRACE(testing::Message() << stand << ", " << first->name << " held "
                                                    << (hold == Hold::Call ? "before" : "after")
                                                    << " the device does it, " << second->name);
                    TwoThreads({stand, first, second, hold}).run();
                }
    EXPECT_EQ(countTransitionDefects(), defects);
}

} // namespace
} // namespace KesTest
