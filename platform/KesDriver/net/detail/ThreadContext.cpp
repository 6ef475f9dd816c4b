#include <KesDriver/net/detail/ThreadContext.h>

#include <giomm/init.h>

#include <mutex>

namespace KesDriver {

namespace {

Glib::RefPtr<Glib::MainContext> makeContext()
{
    static std::once_flag isReady;
    std::call_once(isReady, [] { Gio::init(); });
    return Glib::MainContext::create();
}

} // namespace

ThreadContext::ThreadContext() : _context(makeContext())
{
    _context->push_thread_default();
}

ThreadContext::~ThreadContext()
{
    _context->pop_thread_default();
}

void ThreadContext::run(std::stop_token stop, std::optional<std::chrono::milliseconds> duration,
                        const std::function<bool()>& isOver)
{
    const std::stop_callback wake(stop, [this] { _context->wakeup(); });
    bool isTimeOver = false;
    sigc::connection timer;
    if (duration)
        timer = _context->signal_timeout().connect(
            [&] {
                isTimeOver = true;
                return false;
            },
            static_cast<unsigned>(duration->count()));
    while (!stop.stop_requested() && !isTimeOver && !isOver())
        _context->iteration(true);
    timer.disconnect();
}

} // namespace KesDriver
