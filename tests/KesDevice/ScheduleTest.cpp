// Random schedules from fixed seeds: several threads work with a configuration while its devices fail and
// others replace it. Whatever they do, the outputs are off in the end, and what is told is true and told
// once.

#include <support/DefaultHardware.h>
#include <support/ScheduleBench.h>

#include <KesDevice/KestoStateGlobalUpdater.h>

#include <gtest/gtest.h>

namespace KesTest {
namespace {

using namespace KesDevice;
using namespace std::chrono_literals;

constexpr unsigned scheduleCount = 16000;

KesDriver::OutputState oneAmpere()
{
    KesDriver::OutputState outputs;
    outputs.currents[0].magnitude = 1.0;
    return outputs;
}

/// One schedule: a bench, the global configuration on it, and the threads that work with both.
class Schedule {
public:
    explicit Schedule(unsigned seed) : _seed(seed), _dice(seed), _bench(ScheduleBench::create(_dice)) {}

    void run()
    {
        replace(_dice);
        if (_dice.isOneIn(6))
            _runOneCause();
        else
            _runAll();
        _checkEnd();
    }
    bool hasRun() const { return _bench->haveRun(); }

private:
    void replace(Dice& dice)
    {
        auto hardware = _bench->createHardware(dice);
        HardwareControl::setGlobalInstance(std::move(hardware), true);
        std::lock_guard lock(_mutex);
        _configurations.push_back(HardwareControl::share());
    }

    // What the threads do.

    /// A test as a program runs it; whether it has been stopped.
    void test(Dice& dice)
    {
        const auto hardware = HardwareControl::share();
        const auto prepared = hardware->prepare();
        _bench->hear(prepared);
        if (!prepared)
            return;
        dice.pause(50us);
        const auto started = hardware->startWorkingMode();
        _bench->hear(started);
        if (!started) {
            _isRefused = true;
            return;
        }
        putOut(*hardware, dice);
        dice.pause(500us);
        if (dice.isOneIn(5))
            return;
        _bench->hear(dice.isOneIn(4) ? hardware->disconnect() : hardware->stopWorkingMode());
    }
    static void putOut(HardwareManager& hardware, Dice& dice)
    {
        for (const auto& kesto : hardware.getKestos().lease())
            if (dice.isOneIn(2))
                (void)kesto->setOutputs(oneAmpere());
            else
                (void)kesto->runSequence({{oneAmpere(), 1h}});
        std::shared_ptr<SyncedRun> run;
        if (dice.isOneIn(4))
            (void)hardware.startSequences({{{oneAmpere(), 1h}}}, run);
    }
    void operate(Dice& dice)
    {
        using Operation = Kes::Result (*)(HardwareManager&);
        static const std::vector<Operation> operations = {
            [](auto& hardware) { return hardware.prepare(); },
            [](auto& hardware) { return hardware.startWorkingMode(); },
            [](auto& hardware) { return hardware.stopWorkingMode(); },
            [](auto& hardware) { return hardware.disconnect(); },
            [](auto& hardware) { return hardware.checkOutput(); }};
        if (dice.roll(8) < operations.size())
            _bench->hear(dice.pick(operations)(*HardwareControl::share()));
        else
            test(dice);
    }
    /// What is done in the windows beside the tests.
    void set(Dice& dice)
    {
        const auto hardware = HardwareControl::share();
        const auto address = dice.pick(_bench->getAddresses());
        switch (dice.roll(8)) {
        case 0:
            replace(dice);
            break;
        case 1:
            identify(address);
            break;
        case 2:
            KestoStateGlobalUpdater::getInstance().setUpdating(dice.isOneIn(2));
            break;
        case 3:
            if (const auto kesto = hardware->getKestos().find(address))
                (void)hardware->getKestos().remove(kesto.get());
            break;
        case 4:
            (void)hardware->addKesto(address);
            break;
        case 5:
            if (const auto kesto = hardware->getKestos().find(address))
                (void)kesto->updateState();
            break;
        default:
            dice.pause(200us);
        }
    }
    void identify(const Kesto::Address& address)
    {
        KesDriver::KestoIdentity identity;
        bool isSimulated = false;
        _bench->hear(Kesto::identify(*_bench->getNetwork(), address, identity, isSimulated));
    }

    // The schedules.

    void _runAll()
    {
        _threads.begin([this](Dice& dice) { test(dice); }, 1);
        const auto threads = 1 + _dice.roll(3);
        for (unsigned i = 0; i < threads; ++i) {
            if (_dice.isOneIn(2))
                _threads.begin([this](Dice& dice) { operate(dice); }, 1 + _dice.roll(3));
            else
                _threads.begin([this](Dice& dice) { set(dice); }, 1 + _dice.roll(4));
        }
        _threads.begin([this](Dice& dice) { _bench->disturb(dice); }, _dice.roll(5));
        _threads.awaitAll();
    }

    /// A test of a program, and one thing that happens.
    void _runOneCause()
    {
        _threads.begin([this](Dice& dice) { test(dice); }, 1);
        _threads.begin(
            [this](Dice& dice) {
                dice.pause(1500us);
                _bench->causeOne(dice);
            },
            1);
        _threads.awaitAll();
        (void)HardwareControl::share()->stopWorkingMode();
        if (_bench->countTold() > (_isRefused ? 2U : 1U))
            _bench->complain("One cause is told " + std::to_string(_bench->countTold()) + " times.");
    }

    // The end.

    void _checkEnd()
    {
        KestoStateGlobalUpdater::getInstance().setUpdating(false);
        switch (_dice.roll(3)) {
        case 0:
            _bench->hear(HardwareControl::share()->stopWorkingMode());
            break;
        case 1:
            _bench->hear(HardwareControl::share()->disconnect());
            break;
        default:
            HardwareControl::setGlobalInstance(HardwareManager::create(_bench->getNetwork()), true);
        }
        _bench->checkOutputs();
        HardwareControl::setGlobalInstance(DefaultHardware::create(), true);
        EXPECT_TRUE(waitUntil([this] { return _areAllGone(); })) << "a configuration lives on";
        _bench->checkTold();
    }
    bool _areAllGone()
    {
        std::lock_guard lock(_mutex);
        return std::ranges::all_of(_configurations, [](const auto& hardware) { return hardware.expired(); });
    }

    const unsigned _seed;
    Dice _dice;
    const std::shared_ptr<ScheduleBench> _bench;
    std::mutex _mutex;
    std::vector<std::weak_ptr<HardwareManager>> _configurations;
    ScheduleThreads _threads{_seed};
    /// What comes after the preparation is told, and then it is the reason why the start is refused.
    std::atomic<bool> _isRefused{false};
};

TEST(Schedules, OfDevicesEndWithAllOutputsOffAndTrueTexts)
{
    runSchedules(scheduleCount, [](unsigned seed) {
        Schedule schedule(seed);
        schedule.run();
        return schedule.hasRun();
    });
}

} // namespace
} // namespace KesTest
