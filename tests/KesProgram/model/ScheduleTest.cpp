// Random schedules from fixed seeds: the user at the window, the devices and other threads act at the same
// time. Whatever they do, each start finishes once, the outputs are off in the end, and the texts name what
// they mean.

#include "support/DefaultHardware.h"
#include "support/GuiTest.h"
#include "support/ScheduleBench.h"
#include "support/TemporaryHome.h"

#include <KesDevice/KestoStateGlobalUpdater.h>
#include <KesProgram/model/ProgramModel.h>

#include <array>
#include <condition_variable>
#include <stdexcept>

namespace {

using namespace KesTest;
using namespace std::chrono_literals;
using KesDevice::HardwareControl;
using KesDevice::HardwareManager;
using KesDevice::KestoStateGlobalUpdater;

constexpr unsigned scheduleCount = 4000;

/// Puts out one ampere until it is stopped.
class ScheduledModel : public KesProgram::ProgramModel {
public:
    ScheduledModel(std::shared_ptr<ScheduleBench> bench, Dice& dice)
        : _bench(std::move(bench)), _isLocal(dice.isOneIn(3)), _isThrowing(dice.isOneIn(20))
    {
        signalFinished.connect([this](bool) { ++finished; });
        signalClosed.connect([this] { isClosed = true; });
        signalMessage.connect([this](const std::string& text) { _hear(text); });
    }

    std::atomic<unsigned> finished{0};
    std::atomic<bool> isClosed{false};

    void allowStart() { _setCanProgramStart(true); }
    /// Another configuration with the same devices, as the settings window sets it.
    void replace(Dice& dice)
    {
        auto next = _bench->createHardware(dice);
        setHardware(next, true);
        if (_isLocal)
            fill();
    }
    /// A configuration of the program's own has no devices at first.
    void fill()
    {
        for (const auto& address : _bench->getAddresses())
            (void)getHardware()->addKesto(address);
    }
    std::string getExtension() override { return {}; }
    KesProgram::RunVerdict getRunVerdict() override { return KesProgram::RunVerdict::None; }
    bool usesLocalHardware() override { return _isLocal; }

protected:
    void _onStart() override
    {
        const auto kestos = getHardware()->getKestos().lease();
        KesDriver::OutputStep step;
        step.outputs.currents[0].magnitude = 1.0;
        step.duration = 1h;
        for (const auto& kesto : kestos)
            (void)kesto->runSequence({step});
        if (_isThrowing)
            throw std::runtime_error("thrown by the body");
        std::unique_lock lock(_mutex);
        _stopped.wait(lock, [this] { return _isStopped || !isRunning(); });
        _isStopped = false;
        lock.unlock();
        _finish();
    }
    void _onStop() override
    {
        std::lock_guard lock(_mutex);
        _isStopped = true;
        _stopped.notify_all();
    }

private:
    void _hear(const std::string& text)
    {
        const bool isAboutAll = text.starts_with("Error on starting test.");
        if (text != "thrown by the body" && !isAboutAll)
            _bench->hear(text);
    }

    const std::shared_ptr<ScheduleBench> _bench;
    const bool _isLocal;
    const bool _isThrowing;
    std::mutex _mutex;
    std::condition_variable _stopped;
    bool _isStopped = false;
};

/// One schedule: a model, its bench, and the threads beside the GUI thread.
class ModelSchedule {
public:
    explicit ModelSchedule(unsigned seed) : _seed(seed), _dice(seed), _bench(ScheduleBench::create(_dice)) {}

    void run()
    {
        HardwareControl::setGlobalInstance(_bench->createHardware(_dice), true);
        ScheduledModel model(_bench, _dice);
        model.init();
        if (model.usesLocalHardware())
            model.replace(_dice);
        model.allowStart();
        _threads.begin([this](Dice& dice) { _bench->disturb(dice); }, _dice.roll(5));
        if (_dice.isOneIn(3))
            _threads.begin([this](Dice& dice) { _set(dice); }, 1 + _dice.roll(3));
        for (unsigned i = 3 + _dice.roll(5); i > 0; --i)
            _use(model);
        _close(model);
        _threads.awaitAll();
        _checkEnd(model);
    }
    bool hasRun() const { return _bench->haveRun(); }

private:
    /// Another thread that works with the global configuration.
    void _set(Dice& dice)
    {
        const auto address = dice.pick(_bench->getAddresses());
        switch (dice.roll(5)) {
        case 0:
            HardwareControl::setGlobalInstance(_bench->createHardware(dice), true);
            break;
        case 1: {
            KesDriver::KestoIdentity identity;
            bool isSimulated = false;
            _bench->hear(KesDevice::Kesto::identify(*_bench->getNetwork(), address, identity, isSimulated));
            break;
        }
        case 2:
            KestoStateGlobalUpdater::getInstance().setUpdating(dice.isOneIn(2));
            break;
        case 3:
            _bench->hear(HardwareControl::share()->disconnect());
            break;
        default:
            dice.pause(300us);
        }
    }
    /// One thing that the user does, and some time in which the window works.
    void _use(ScheduledModel& model)
    {
        switch (_dice.roll(9)) {
        case 0:
            model.stopTest();
            break;
        case 1:
            model.beginDisconnect();
            break;
        case 2:
            model.replace(_dice);
            break;
        default:
            _start(model);
        }
        const bool isPatient = _dice.isOneIn(2);
        const auto end = std::chrono::steady_clock::now() +
                         std::chrono::microseconds(scheduleSlowness * _dice.roll(15000));
        do {
            turnMainLoop(static_cast<int>(_dice.roll(10)));
            std::this_thread::yield();
        } while (isPatient && !model.isOutputStarted() && model.finished < _starts &&
                 std::chrono::steady_clock::now() < end);
    }
    void _start(ScheduledModel& model)
    {
        if (model.startTest())
            ++_starts;
    }
    void _close(ScheduledModel& model)
    {
        model.close();
        if (waitFor([&] { return model.isClosed.load(); }, 60s))
            return;
        std::cerr << "KES_SCHEDULE=" << _seed << " hangs.\n";
        std::abort();
    }

    void _checkEnd(ScheduledModel& model)
    {
        EXPECT_EQ(model.finished, _starts);
        EXPECT_FALSE(model.isRunning() || model.isOutputStarted());
        EXPECT_FALSE(model.getHardware()->isOutputRunning());
        KestoStateGlobalUpdater::getInstance().setUpdating(false);
        _bench->checkOutputs();
        _bench->checkTold();
        HardwareControl::setGlobalInstance(DefaultHardware::create(), true);
    }

    const unsigned _seed;
    Dice _dice;
    const std::shared_ptr<ScheduleBench> _bench;
    ScheduleThreads _threads{_seed};
    unsigned _starts = 0;
};

/// Listeners at what outlives a model.
std::array<std::size_t, 4> countListeners()
{
    const auto control = HardwareControl::share();
    return {HardwareControl::signalHardwareChanged.size(), control->signalRunningChanged.size(),
            control->signalStatusChanged.size(), control->signalAvary.size()};
}

class ModelSchedules : public GuiTest {};

TEST_F(ModelSchedules, FinishEveryStartOnceAndEndWithAllOutputsOff)
{
    const TemporaryHome home;
    const auto listeners = countListeners();
    runSchedules(scheduleCount, [](unsigned seed) {
        ModelSchedule schedule(seed);
        schedule.run();
        return schedule.hasRun();
    });
    EXPECT_EQ(countListeners(), listeners);
}

} // namespace
