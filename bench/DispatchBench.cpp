// Posts to the GUI thread: the dispatcher's queue against one idle handler per post.
//
// Two threads post half a million functions each while the main loop runs. The rate counts from the first
// post until the last function has run. Frames are counted in a window that redraws itself for every frame
// of its clock, first left alone, then under posts without a pause.

#include <KesCommonView/ApplicationDispatcher.h>
#include <KesCommonView/UpdateView.h>

#include <glibmm/main.h>
#include <gtkmm/drawingarea.h>
#include <gtkmm/main.h>
#include <gtkmm/window.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <memory>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t total = 1'000'000;
constexpr std::size_t perThread = total / 2;
constexpr int rounds = 5;
constexpr int frameRounds = 3;
constexpr std::chrono::seconds frameTime{3};

/// The functions that have run. A post carries one number and no memory of its own on either side: which
/// thread made it (the lowest bit), and how many that thread had made before.
struct Counters {
    std::array<std::size_t, 2> next{};
    long disordered = 0;

    void run(std::size_t post) { disordered += next[post & 1]++ == post >> 1 ? 0 : 1; }
    std::size_t getSum() const { return next[0] + next[1]; }
} counters;

void postIdle(std::size_t post)
{
    const auto run = [](gpointer data) -> gboolean {
        counters.run(GPOINTER_TO_SIZE(data));
        return G_SOURCE_REMOVE;
    };
    g_idle_add(run, GSIZE_TO_POINTER(post));
}

void postDispatcher(std::size_t post)
{
    Kes::beginUpdateView([post] { counters.run(post); });
}

/// Posts per second; a rate below zero tells that the order was broken.
template <typename PostFunction>
double measureRate(PostFunction post)
{
    counters = {};
    const auto start = Clock::now();
    std::array<std::thread, 2> threads;
    for (std::size_t who = 0; who < threads.size(); ++who)
        threads[who] = std::thread([&, who] {
            for (std::size_t i = 0; i < perThread; ++i)
                post(i << 1 | who);
        });
    const auto context = Glib::MainContext::get_default();
    while (counters.getSum() < total)
        context->iteration(true);
    const std::chrono::duration<double> time = Clock::now() - start;
    for (auto& thread : threads)
        thread.join();
    return (counters.disordered ? -1 : 1) * static_cast<double>(total) / time.count();
}

double getMedian(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// A window that draws every frame of its clock.
class FrameWindow : public Gtk::Window {
public:
    FrameWindow()
    {
        set_default_size(800, 600);
        _area.signal_draw().connect([this](const Cairo::RefPtr<Cairo::Context>& context) {
            ++_frames;
            context->set_source_rgb(static_cast<double>(_frames % 100) / 100, 0.5, 0.5);
            context->paint();
            return true;
        });
        _area.add_tick_callback([this](const Glib::RefPtr<Gdk::FrameClock>&) {
            _area.queue_draw();
            return true;
        });
        add(_area);
        show_all();
    }

    double measureFrameRate()
    {
        const auto context = Glib::MainContext::get_default();
        const auto start = Clock::now();
        const long before = _frames;
        while (Clock::now() - start < frameTime)
            context->iteration(true);
        const std::chrono::duration<double> time = Clock::now() - start;
        return static_cast<double>(_frames - before) / time.count();
    }

private:
    Gtk::DrawingArea _area;
    long _frames = 0;
};

/// Keeps the queue from running dry, and from growing without end, for as long as it lives.
class Flood {
public:
    Flood()
    {
        for (auto& thread : _threads)
            thread = std::thread([this] { _run(); });
    }
    ~Flood()
    {
        _stop = true;
        for (auto& thread : _threads)
            thread.join();
        while (_queued > 0)
            Glib::MainContext::get_default()->iteration(true);
    }
    Flood(const Flood&) = delete;
    Flood& operator=(const Flood&) = delete;

private:
    void _run()
    {
        while (!_stop) {
            if (_queued > 200'000) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
                continue;
            }
            ++_queued;
            Kes::beginUpdateView([this] { --_queued; });
        }
    }

    std::array<std::thread, 2> _threads;
    std::atomic<bool> _stop{false};
    std::atomic<long> _queued{0};
};

} // namespace

int main(int argc, char** argv)
{
    Gtk::Main gtk(argc, argv);
    Kes::ApplicationDispatcherPresenter::getInstance().registerDispatcher();

    std::vector<double> idle;
    std::vector<double> dispatcher;
    std::vector<double> ratios;
    for (int i = 0; i < rounds; ++i) {
        idle.push_back(measureRate(postIdle));
        dispatcher.push_back(measureRate(postDispatcher));
        ratios.push_back(dispatcher.back() / idle.back());
    }
    const bool ordered = *std::min_element(dispatcher.begin(), dispatcher.end()) > 0;
    const double ratio = getMedian(ratios);
    std::printf("one idle handler per post  %8.0f posts/ms\n", getMedian(idle) / 1000);
    std::printf("dispatcher                 %8.0f posts/ms\n", getMedian(dispatcher) / 1000);
    std::printf("ratio                      %8.1f (at least 8), in order per thread: %s\n", ratio,
                ordered ? "yes" : "no");

    FrameWindow window;
    window.measureFrameRate(); // until the window is up
    std::vector<double> alone;
    std::vector<double> shares;
    for (int i = 0; i < frameRounds; ++i) {
        alone.push_back(window.measureFrameRate());
        const Flood flood;
        shares.push_back(window.measureFrameRate() / alone.back());
    }
    const double share = getMedian(shares);
    std::printf("frames per second          %8.1f alone\n", getMedian(alone));
    std::printf("share drawn under posts    %8.1f %% (at least 95 %%)\n", 100 * share);
    return ordered && ratio >= 8 && share >= 0.95 ? 0 : 1;
}
