// The hardware area of the status bar against labels set directly in a bare window:
// rebuilding it for 64 devices, and 10 000 operation-state changes from a device thread.
// Prints the ratios and the longest time for which the main loop did not turn.

#include <KesCommonView/ApplicationDispatcher.h>
#include <KesDevice/HardwareManager.h>
#include <KesProgram/model/ProgramModel.h>
#include <KesProgram/statusbar/StatusBarHardwarePresenter.h>

#include <gtkmm.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <iomanip>
#include <iostream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int devices = 64;
constexpr int rebuilds = 20;
constexpr int changes = 10000;

/// Its own configuration keeps the benchmark away from the user's devices.
class BenchModel : public KesProgram::ProgramModel {
public:
    bool usesLocalHardware() override { return true; }
    std::string getExtension() override { return {}; }
    KesProgram::RunVerdict getRunVerdict() override { return KesProgram::RunVerdict::None; }

    void addDevices()
    {
        for (int i = 0; i < devices; ++i)
            if (!getHardware()->addKesto(
                    *KesDevice::Kesto::Address::parse("10.0.0." + std::to_string(i + 1))))
                std::cerr << "a device was refused\n";
    }

protected:
    void _onStart() override { _finish(); }
};

/// Runs the main loop until the predicate holds and keeps the longest time between two turns.
double runUntil(const std::function<bool()>& predicate)
{
    double longest = 0.0;
    auto last = Clock::now();
    const auto ticks = Glib::signal_timeout().connect(
        [&] {
            const auto now = Clock::now();
            longest = std::max(longest, Milliseconds(now - last).count());
            last = now;
            return true;
        },
        2, Glib::PRIORITY_HIGH);
    while (!predicate())
        Gtk::Main::iteration(true);
    while (Gtk::Main::events_pending())
        Gtk::Main::iteration(false);
    auto connection = ticks;
    connection.disconnect();
    return std::max(longest, Milliseconds(Clock::now() - last).count());
}

double timed(const std::function<void()>& work)
{
    const auto start = Clock::now();
    work();
    return Milliseconds(Clock::now() - start).count();
}

void settle()
{
    const auto end = Clock::now() + std::chrono::milliseconds(200);
    runUntil([&] { return Clock::now() > end; });
}

/// Rows of labels, as many as the hardware area has.
class BareRows : public Gtk::Box {
public:
    BareRows() : Gtk::Box(Gtk::ORIENTATION_VERTICAL) {}

    void rebuild()
    {
        labels.clear();
        for (int i = 0; i < devices; ++i) {
            labels.push_back(std::make_unique<Gtk::Label>("10.0.0." + std::to_string(i + 1)));
            pack_start(*labels.back(), Gtk::PACK_SHRINK);
        }
        show_all();
    }

    std::vector<std::unique_ptr<Gtk::Label>> labels;
};

struct Figure {
    double milliseconds = 0.0;
    double longestFreeze = 0.0;
};

Figure rebuildArea(BenchModel& model)
{
    Figure figure;
    figure.milliseconds = timed([&] {
        for (int i = 0; i < rebuilds; ++i) {
            model.signalHardwareChanged.emit();
            figure.longestFreeze = std::max(figure.longestFreeze, runUntil([] { return true; }));
        }
    });
    return figure;
}

Figure rebuildLabels(BareRows& rows)
{
    Figure figure;
    figure.milliseconds = timed([&] {
        for (int i = 0; i < rebuilds; ++i) {
            rows.rebuild();
            figure.longestFreeze = std::max(figure.longestFreeze, runUntil([] { return true; }));
        }
    });
    return figure;
}

Figure changeStates(BenchModel& model)
{
    const auto kestos = model.getHardware()->getKestos().getItems();
    std::atomic<bool> done{false};
    Figure figure;
    figure.milliseconds = timed([&] {
        std::thread device([&] {
            for (int i = 0; i < changes; ++i)
                kestos[static_cast<std::size_t>(i % devices)]->signalOperationErrorChanged.emit(
                    Kes::Nullable<std::string>(i % 3 ? "error " + std::to_string(i) : std::string()));
            done = true;
        });
        figure.longestFreeze = runUntil([&] { return done.load(); });
        device.join();
    });
    return figure;
}

Figure changeLabels(BareRows& rows)
{
    int i = 0;
    Figure figure;
    figure.milliseconds = timed([&] {
        const auto idle = Glib::signal_idle().connect([&] {
            for (int n = 0; n < 100 && i < changes; ++n, ++i)
                rows.labels[static_cast<std::size_t>(i % devices)]->set_text("error " + std::to_string(i));
            return i < changes;
        });
        figure.longestFreeze = runUntil([&] { return i >= changes; });
        auto connection = idle;
        connection.disconnect();
    });
    return figure;
}

void print(const char* what, const Figure& area, const Figure& bare)
{
    std::cout << std::fixed << std::setprecision(2) << what << ": area " << area.milliseconds
              << " ms, labels " << bare.milliseconds << " ms, ratio " << area.milliseconds / bare.milliseconds
              << ", longest freeze " << area.longestFreeze << " ms (labels " << bare.longestFreeze
              << " ms)\n";
}

} // namespace

int main(int argc, char** argv)
{
    Gtk::Main gtk(argc, argv);
    Kes::ApplicationDispatcherPresenter::getInstance().registerDispatcher();

    BenchModel model;
    model.init();
    model.addDevices();
    KesProgram::StatusBarHardwarePresenter presenter(model);
    Gtk::Window areaWindow;
    areaWindow.add(dynamic_cast<Gtk::Widget&>(*presenter.getView()));
    areaWindow.show_all();
    BareRows rows;
    rows.rebuild();
    Gtk::Window bareWindow;
    bareWindow.add(rows);
    bareWindow.show_all();
    settle();

    const auto bareRebuild = rebuildLabels(rows);
    const auto areaRebuild = rebuildArea(model);
    settle();
    const auto bareChanges = changeLabels(rows);
    const auto areaChanges = changeStates(model);
    print("rebuild for 64 devices, 20 times", areaRebuild, bareRebuild);
    print("10000 state changes", areaChanges, bareChanges);
    areaWindow.remove();
}
