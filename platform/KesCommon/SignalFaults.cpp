#include <KesCommon/SignalFaults.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/Log.h>

namespace Kes {

namespace {

/// A handler that is running, and the one inside which it has been begun.
struct Running {
    const SignalFaults::Handler* handler;
    const Running* outer;
};

thread_local const Running* innermost = nullptr;

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
    const Running running{&handler, innermost};
    innermost = &running;
    try {
        handler(text);
    } catch (...) {
        log(text);
        log(getCurrentExceptionText());
    }
    innermost = running.outer;
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
