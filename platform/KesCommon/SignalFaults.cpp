#include <KesCommon/SignalFaults.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/Log.h>

namespace Kes {

namespace {

/// A handler that is running, and the one inside which it has been begun.
struct Running {
    explicit Running(const SignalFaults::Handler& running);
    ~Running();
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    const SignalFaults::Handler* const handler;
    const Running* const outer;
};

thread_local const Running* innermost = nullptr;

Running::Running(const SignalFaults::Handler& running) : handler(&running), outer(innermost)
{
    innermost = this;
}

Running::~Running()
{
    innermost = outer;
}

bool isRunning(const SignalFaults::Handler& handler)
{
    const auto* running = innermost;
    while (running && running->handler != &handler)
        running = running->outer;
    return running != nullptr;
}

void log(const std::string& text)
{
    KesLog::Log::writeError("A slot has thrown: " + text);
}

void handle(const SignalFaults::Handler& handler, const std::string& text)
{
    const Running running(handler);
    try {
        handler(text);
    } catch (...) {
        log(text);
        log(getCurrentExceptionText());
    }
}

} // namespace

void SignalFaults::handleCurrent(const std::shared_ptr<const Handler>& handler)
{
    const auto text = getCurrentExceptionText();
    if (handler && *handler && !isRunning(*handler))
        handle(*handler, text);
    else
        log(text);
}

} // namespace Kes
