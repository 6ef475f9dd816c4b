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

constexpr long total = 1'000'000;
constexpr long perThread = total / 2;
constexpr int rounds = 5;
constexpr std::chrono::seconds frameTime{4};

struct Counters {
    std::array<long, 2> next{};
    long disordered = 0;

    void run(std::size_t who, long number) { disordered += next[who]++ == number ? 0 : 1; }
    long getSum() const { return next[0] + next[1]; }
};

void postIdle(Counters& counters, std::size_t who, long number)
{
    struct Post {
        Counters& counters;
        std::size_t who;
        long number;
    };
    const auto run = [](gpointer data) -> gboolean {
        const std::unique_ptr<Post> post(static_cast<Post*>(data));
        post->counters.run(post->who, post->number);
        return G_SOURCE_REMOVE;
    };
    g_idle_add(run, std::make_unique<Post>(Post{counters, who, number}).release());
}

void postDispatcher(Counters& counters, std::size_t who, long number)
{
    Kes::beginUpdateView([&counters, who, number] { counters.run(who, number); });
}

/// Posts per second; a rate below zero tells that the order was broken.
template <typename PostFunction>
double measureRate(PostFunction post)
{
    Counters counters;
    const auto start = Clock::now();
    std::array<std::thread, 2> threads;
    for (std::size_t who = 0; who < threads.size(); ++who)
        threads[who] = std::thread([&, who] {
            for (long i = 0; i < perThread; ++i)
                post(counters, who, i);
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

    long getCount() const { return _count; }

private:
    void _run()
    {
        while (!_stop) {
            if (_queued > 200'000) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
                continue;
            }
            ++_queued;
            Kes::beginUpdateView([this] {
                --_queued;
                ++_count;
            });
        }
    }

    std::array<std::thread, 2> _threads;
    std::atomic<bool> _stop{false};
    std::atomic<long> _queued{0};
    long _count = 0;
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
    const double unloaded = window.measureFrameRate();
    double loaded = 0;
    long posts = 0;
    {
        const Flood flood;
        loaded = window.measureFrameRate();
        posts = flood.getCount();
    }
    std::printf("frames per second          %8.1f alone, %.1f under %ld posts/ms\n", unloaded, loaded,
                posts / std::chrono::milliseconds(frameTime).count());
    std::printf("share of frames            %8.1f %% (at least 95 %%)\n", 100 * loaded / unloaded);
    return ordered && ratio >= 8 && loaded >= 0.95 * unloaded ? 0 : 1;
}
