// From a stop to outputs of zero, as the simulated device itself shows them, against a stop that a bare link
// sends; and the longest time for which the main loop does not turn while devices that do not answer are
// switched off, disconnected and replaced. Prints milliseconds and ratios.

#include <KesCommonView/ApplicationDispatcher.h>
#include <KesDevice/HardwareControl.h>
#include <KesDriver/simulated/SimulatedNetwork.h>
#include <KesProgram/model/ProgramModel.h>

#include <gtkmm.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <iomanip>
#include <iostream>
#include <memory>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;
using namespace KesDriver;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int stops = 500;

OutputSequence oneAmpere()
{
    OutputStep step;
    step.outputs.currents[0].magnitude = 1.0;
    step.duration = 1h;
    return {step};
}

/// Devices at addresses of their own in a network of their own.
struct Bench {
    Bench()
    {
        for (std::uint8_t i = 1; i <= 2; ++i) {
            devices.push_back(std::make_shared<SimulatedKesto>(KestoIdentifer(3, i)));
            network->add(address(i), devices.back());
        }
    }
    static NetAddress address(std::uint8_t i) { return NetAddress(NetAddress::Bytes{10, 0, 0, i}); }
    std::unique_ptr<KesDevice::HardwareManager> makeHardware() const
    {
        auto hardware = KesDevice::HardwareManager::create(network);
        for (std::uint8_t i = 1; i <= devices.size(); ++i)
            (void)hardware->addKesto(address(i));
        return hardware;
    }
    bool isOff() const
    {
        return std::all_of(devices.begin(), devices.end(),
                           [](const auto& device) { return device->getOutputs() == OutputState(); });
    }

    std::shared_ptr<SimulatedNetwork> network = std::make_shared<SimulatedNetwork>();
    std::vector<std::shared_ptr<SimulatedKesto>> devices;
};

/// Puts out one ampere on every device until it is stopped.
class StopModel : public KesProgram::ProgramModel {
public:
    std::string getExtension() override { return {}; }
    KesProgram::RunVerdict getRunVerdict() override { return KesProgram::RunVerdict::None; }
    void allowStart() { _setCanProgramStart(true); }

protected:
    void _onStart() override
    {
        const auto kestos = getHardware()->getKestos().lease();
        for (const auto& kesto : kestos)
            (void)kesto->runSequence(oneAmpere());
        {
            std::unique_lock lock(_mutex);
            _stopped.wait(lock, [this] { return !isRunning(); });
        }
        _finish();
    }
    void _onStop() override
    {
        const std::lock_guard lock(_mutex);
        _stopped.notify_all();
    }

private:
    std::mutex _mutex;
    std::condition_variable _stopped;
};

/// Runs the main loop until the predicate holds and returns the longest time between two turns.
double runUntil(
    const std::function<bool()>& predicate, const std::function<void()>& action = [] {})
{
    double longest = 0.0;
    auto last = Clock::now();
    auto ticks = Glib::signal_timeout().connect(
        [&] {
            const auto now = Clock::now();
            longest = std::max(longest, Milliseconds(now - last).count());
            last = now;
            return true;
        },
        1, Glib::PRIORITY_HIGH);
    action();
    while (!predicate())
        Gtk::Main::iteration(true);
    ticks.disconnect();
    return std::max(longest, Milliseconds(Clock::now() - last).count());
}

double timeUntilOff(const Bench& bench, const std::function<void()>& stop)
{
    const auto begin = Clock::now();
    stop();
    while (!bench.isOff())
        std::this_thread::yield();
    return Milliseconds(Clock::now() - begin).count();
}

struct Times {
    double median;
    double p99;
};

Times summarize(std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    return {times[times.size() / 2], times[times.size() * 99 / 100]};
}

Times stopByModel(const Bench& bench, StopModel& model)
{
    std::mt19937 random{1};
    std::vector<double> times;
    for (int i = 0; i < stops; ++i) {
        runUntil([&] { return model.getCanStart(); });
        model.startTest();
        runUntil([&] { return model.isOutputStarted() && !bench.isOff(); });
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 3000));
        times.push_back(timeUntilOff(bench, [&] { model.stopTest(); }));
    }
    runUntil([&] { return model.getCanStart(); });
    return summarize(times);
}

Times stopByLink(const Bench& bench)
{
    std::vector<std::unique_ptr<IKestoLink>> links;
    std::vector<double> times;
    for (std::uint8_t i = 1; i <= bench.devices.size(); ++i) {
        links.push_back(bench.network->createLink(Bench::address(i)));
        ConnectionNumber number = 0;
        (void)links.back()->connect(number);
        (void)links.back()->startWorkingMode();
    }
    for (int i = 0; i < stops; ++i) {
        for (const auto& link : links)
            (void)link->runSequence(oneAmpere());
        times.push_back(timeUntilOff(bench, [&] {
            for (const auto& link : links)
                (void)link->stopOutputs();
        }));
    }
    return summarize(times);
}

void print(const std::string& name, const Times& times)
{
    std::cout << std::left << std::setw(44) << name << " p50 " << std::setw(8) << times.median << " p99 "
              << times.p99 << " ms\n";
}

void printGap(const std::string& name, double milliseconds)
{
    std::cout << std::left << std::setw(44) << name << ' ' << milliseconds << " ms\n";
}

/// The main loop while the first device has just fallen silent.
void measureGaps(const Bench& bench, StopModel& model)
{
    auto& silent = *bench.devices.front();
    const auto run = [&] {
        silent.setSilent(false);
        runUntil([&] { return model.getCanStart(); });
        model.startTest();
        runUntil([&] { return model.isOutputStarted() && !bench.isOff(); });
    };
    const auto isIdle = [&] {
        return bench.isOff() && model.getCanStart() && !model.getHardware()->isBusy();
    };
    const std::pair<const char*, std::function<void()>> cases[] = {
        {"stop with a silent device", [&] { model.stopTest(); }},
        {"power off in a run with a silent device", [&] { model.beginDisconnect(); }},
        {"configuration replaced, silent device", [&] {
             auto next = bench.makeHardware();
             model.setHardware(next, true);
             model.stopTest();
         }}};
    for (const auto& [name, action] : cases) {
        run();
        silent.setSilent(true);
        printGap(name, runUntil(isIdle, action));
    }
    silent.setSilent(true);
    model.startTest();
    runUntil([&] { return model.getHardware()->isBusy(); });
    printGap("power off while connecting, silent device",
             runUntil([&] { return isIdle(); }, [&] { model.beginDisconnect(); }));
    silent.setSilent(false);
}

} // namespace

int main(int argc, char** argv)
{
    const auto application = Gtk::Application::create(argc, argv);
    Kes::ApplicationDispatcherPresenter::getInstance().registerDispatcher();
    std::cout << std::fixed << std::setprecision(3);
    const Bench bench;
    const auto byLink = stopByLink(bench);
    KesDevice::HardwareControl::setGlobalInstance(bench.makeHardware(), true);
    StopModel model;
    model.init();
    model.allowStart();
    const auto byModel = stopByModel(bench, model);
    std::cout << stops << " stops of 2 devices, to outputs of zero\n";
    print("  a bare link", byLink);
    print("  the model's stop", byModel);
    std::cout << "  the model's p99 over the link's: " << byModel.p99 / byLink.p99 << "\n\n"
              << "longest time without a turn of the main loop\n";
    measureGaps(bench, model);
    return 0;
}
