// Whether a process that is used for long grows: rounds of opening a window and an archive, a test, saving,
// the report, the windows of hardware and test object, and closing. Prints heap, resident memory, threads,
// descriptors and live widgets. usage: Soak [rounds [settled]]; fails when there is more after the last round
// than after round `settled`.

#include "HeapMeter.h"
#include "support/LiveWidgets.h"
#include "support/MainLoop.h"
#include "support/TemporaryHome.h"
#include "support/ThreadCount.h"

#include <KesCommon/DesktopOpener.h>
#include <KesCommonView/ApplicationDispatcher.h>
#include <KesCommonView/DialogBackend.h>
#include <KesDevice/HardwareControl.h>
#include <KesProgram/text/Program.h>
#include <Overcurrent/presenter/OvercurrentPresenter.h>

#include <gtkmm.h>
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using KesTest::waitFor;

/// Simulated seconds per real one.
constexpr double speed = 1e5;
/// More than the recent files hold, so that their menu changes in every round.
constexpr int archives = 12;
/// In bytes: caches of the toolkit fill up for long, by about 400 in each of 400 rounds, in steps.
constexpr double heapPerRound = 640;

void await(const char* what, const std::function<bool()>& condition)
{
    if (!waitFor(condition))
        throw std::runtime_error(std::string("waited in vain: ") + what);
}

/// Says yes to everything, and chooses the file that is set.
class Yes : public Kes::DialogBackend {
public:
    explicit Yes(const std::string& path) : _path(path) {}

    Kes::DialogResult showMessage(const Kes::MessageRequest& request) override
    {
        return Kes::hasButton(request.buttons, Kes::DialogResult::Yes) ? Kes::DialogResult::Yes
                                                                       : Kes::DialogResult::Ok;
    }
    std::string chooseFile(const Kes::FileRequest&) override { return _path; }

private:
    const std::string& _path;
};

struct Figures {
    std::size_t heap = 0;
    std::size_t resident = 0;
    int threads = 0;
    int descriptors = 0;
    int widgets = 0;

    static Figures take(const KesTest::LiveWidgets& live)
    {
        Figures figures;
        figures.heap = HeapMeter::getUsed();
        malloc_trim(0);
        std::size_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages >> pages;
        figures.resident = pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        figures.threads = KesTest::countThreads();
        const std::filesystem::directory_iterator open("/proc/self/fd");
        figures.descriptors = static_cast<int>(std::distance(begin(open), end(open)));
        figures.widgets = live.getCount() + static_cast<int>(KesTest::countWindows());
        return figures;
    }

    void print(int round) const
    {
        std::printf("%5d  heap %8.1f kB  resident %8.1f kB  threads %3d  descriptors %3d  widgets %5d\n",
                    round, static_cast<double>(heap) / 1024.0, static_cast<double>(resident) / 1024.0,
                    threads, descriptors, widgets);
        std::fflush(stdout);
    }
};

/// The widgets below one that are of a type, menus not included.
void collect(GtkWidget* widget, GType type, std::vector<GtkWidget*>& found)
{
    if (g_type_is_a(G_OBJECT_TYPE(widget), type))
        found.push_back(widget);
    if (!GTK_IS_CONTAINER(widget))
        return;
    GList* children = gtk_container_get_children(GTK_CONTAINER(widget));
    for (GList* child = children; child; child = child->next)
        collect(GTK_WIDGET(child->data), type, found);
    g_list_free(children);
}

/// Chooses the item as the user does; menus are windows of their own.
void activateMenuItem(const std::string& label)
{
    std::vector<GtkWidget*> items;
    GList* windows = gtk_window_list_toplevels();
    for (GList* window = windows; window; window = window->next)
        collect(GTK_WIDGET(window->data), GTK_TYPE_MENU_ITEM, items);
    g_list_free(windows);
    const auto found = std::find_if(items.begin(), items.end(), [&](GtkWidget* item) {
        const char* text = gtk_menu_item_get_label(GTK_MENU_ITEM(item));
        return text && label == text;
    });
    if (found == items.end())
        throw std::runtime_error("no menu item " + label);
    gtk_menu_item_activate(GTK_MENU_ITEM(*found));
}

/// The program, opened and closed once.
class Round {
public:
    explicit Round(std::string& path) : _path(path)
    {
        _model.setSpeed(speed);
        _presenter.signalClosed.connect([this] { _isClosed = true; });
        _presenter.open(nullptr);
        await("the window", [this] { return _window().get_mapped(); });
        // The content comes after the first frame.
        await("the content", [this] { return _hasContent(); });
    }

    void run(int round)
    {
        if (round > 0)
            activateMenuItem(_path);
        if (!_model.startTest())
            throw std::runtime_error("the test does not start");
        await("the results", [this] { return _model.getResults() && _model.getCanStart(); });
        _path = _folder(_path) + "/" + std::to_string(round % archives) + ".kovc";
        _presenter.saveAsArchive();
        if (!std::filesystem::exists(_path))
            throw std::runtime_error("nothing was saved");
        _presenter.requestReport();
        const auto cancel = [](Gtk::Window& window) { window.close(); };
        // Confirmed settings are a new configuration with new devices.
        const auto confirm = [](Gtk::Window& window) { window.activate_default(); };
        _openAndClose(
            "hardware settings", [this] { _presenter.requestHardware(); }, cancel);
        _openAndClose(
            "hardware settings", [this] { _presenter.requestHardware(); }, confirm);
        _openAndClose(
            "test object", [this] { _presenter.requestTestObject(); }, cancel);
        _openAndClose(
            "about", [] { activateMenuItem(lng::Program::get("Menu.about")); }, cancel);
        _presenter.requestClose();
        await("the end", [this] { return _isClosed; });
    }

private:
    static std::string _folder(const std::string& path)
    {
        return std::filesystem::path(path).parent_path().string();
    }

    Gtk::Window& _window() { return dynamic_cast<Gtk::Window&>(*_presenter.getView()); }

    bool _hasContent()
    {
        std::vector<GtkWidget*> tables;
        collect(GTK_WIDGET(_window().gobj()), GTK_TYPE_TREE_VIEW, tables);
        return !tables.empty();
    }

    Gtk::Window* _other()
    {
        for (auto* window : Gtk::Window::list_toplevels())
            if (window != &_window() && window->get_mapped() &&
                window->get_window_type() == Gtk::WINDOW_TOPLEVEL)
                return window;
        return nullptr;
    }

    void _openAndClose(const char* what, const std::function<void()>& open,
                       const std::function<void(Gtk::Window&)>& close)
    {
        open();
        await(what, [this] { return _other() != nullptr; });
        close(*_other());
        await(what, [this] { return _other() == nullptr; });
    }

    std::string& _path;
    Overcurrent::OvercurrentModel _model;
    Overcurrent::OvercurrentPresenter _presenter{_model};
    bool _isClosed = false;
};

void settle()
{
    KesDevice::HardwareControl::waitForRetired();
    KesTest::runPendingEvents();
}

/// In bytes per round, without the largest step between two rounds: a leak comes again, a table of the toolkit
/// that doubles does not.
double getHeapGrowth(const std::vector<Figures>& rounds)
{
    double sum = 0;
    double largest = 0;
    for (std::size_t i = 1; i < rounds.size(); ++i) {
        const auto step = static_cast<double>(rounds[i].heap) - static_cast<double>(rounds[i - 1].heap);
        sum += step;
        largest = std::max(largest, step);
    }
    return (sum - largest) / static_cast<double>(rounds.size() - 1);
}

/// From the settled round to the last.
bool hasGrown(const std::vector<Figures>& rounds)
{
    const auto& settled = rounds.front();
    const auto& last = rounds.back();
    const auto growth = getHeapGrowth(rounds);
    const bool grown = last.threads > settled.threads || last.descriptors > settled.descriptors ||
                       last.widgets > settled.widgets || growth > heapPerRound;
    std::printf("%s: %.0f bytes of heap per round\n", grown ? "grows" : "flat", growth);
    return grown;
}

bool soak(int rounds, int settled)
{
    const KesTest::TemporaryHome home;
    std::string path = home.file("none.kovc");
    Kes::DialogBackend::install(std::make_unique<Yes>(path));
    Kes::DesktopOpener::replace([](const std::string&) -> Kes::Result { return true; });
    const KesTest::LiveWidgets live;
    std::vector<Figures> figures;
    figures.reserve(static_cast<std::size_t>(rounds));
    for (int round = 1; round <= rounds; ++round) {
        std::make_unique<Round>(path)->run(round - 1);
        settle();
        const auto now = Figures::take(live);
        if (round >= settled)
            figures.push_back(now);
        if (round % std::max(1, rounds / 20) == 0 || round == settled)
            now.print(round);
    }
    Kes::DialogBackend::install(nullptr);
    return hasGrown(figures);
}

/// Begins the program again with GLib taking each piece of memory from the heap, where it is counted. GLib
/// decides that before `main`.
void countSlices(char** argv)
{
    constexpr const char* variable = "G_SLICE";
    constexpr const char* wanted = "always-malloc";
    const char* present = std::getenv(variable);
    if (present && std::string(present) == wanted)
        return;
    setenv(variable, wanted, 1);
    execv("/proc/self/exe", argv);
}

} // namespace

int main(int argc, char** argv)
{
    countSlices(argv);
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 1000;
    const int settled = argc > 2 ? std::atoi(argv[2]) : 100;
    if (settled < 1 || rounds <= settled) {
        std::fprintf(stderr, "usage: Soak [rounds [settled]], settled less than rounds\n");
        return 2;
    }
    if (!gtk_init_check(&argc, &argv)) {
        std::fprintf(stderr, "no display: run this through tests/support/headless.sh\n");
        return 2;
    }
    Gtk::Main::init_gtkmm_internals();
    Kes::ApplicationDispatcherPresenter::getInstance().registerDispatcher();
    try {
        return soak(rounds, settled) ? 1 : 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 2;
    }
}
