#pragma once

#include <glibmm/main.h>

#include <chrono>
#include <functional>
#include <optional>
#include <stop_token>

namespace KesDriver {

/// The default main context of the thread that makes it, while it lives.
class ThreadContext {
public:
    ThreadContext();
    ~ThreadContext();
    ThreadContext(const ThreadContext&) = delete;
    ThreadContext& operator=(const ThreadContext&) = delete;

    /// Works until it is asked to stop, the time has passed or the condition holds, which is looked at after
    /// each event.
    void run(std::stop_token stop, std::optional<std::chrono::milliseconds> duration,
             const std::function<bool()>& isOver);

private:
    const Glib::RefPtr<Glib::MainContext> _context;
};

} // namespace KesDriver
