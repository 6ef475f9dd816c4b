#include <KesCommon/Log.h>

#include <glib.h>

#include <array>
#include <memory>
#include <mutex>
#include <utility>

namespace KesLog {

namespace {

std::mutex observerMutex;

/// Never destroyed: texts are written until the very end of the process.
Log::Observer& observer()
{
    static Log::Observer& instance = *std::make_unique<Log::Observer>().release();
    return instance;
}

/// Errors go out as warnings with the priority of errors: GLib may end the process for its own
/// "critical", and always does so for its "error".
void write(Log::Level level, GLogLevelFlags flags, const char* priority, const std::string& text) noexcept
{
    const std::array<GLogField, 3> fields{{
        {"MESSAGE", text.data(), static_cast<gssize>(text.size())},
        {"PRIORITY", priority, -1},
        {"GLIB_DOMAIN", "Kes", -1},
    }};
    g_log_structured_array(flags, fields.data(), fields.size());
    try {
        auto current = [] {
            std::lock_guard lock(observerMutex);
            return observer();
        }();
        if (current)
            current(level, text);
    } catch (...) {
        // A log that cannot be watched is no reason to fail whoever writes to it.
    }
}

} // namespace

void Log::writeInfo(const std::string& text)
{
    write(Level::Info, G_LOG_LEVEL_INFO, "6", text);
}

void Log::writeWarn(const std::string& text)
{
    write(Level::Warn, G_LOG_LEVEL_WARNING, "4", text);
}

void Log::writeError(const std::string& text)
{
    write(Level::Error, G_LOG_LEVEL_WARNING, "3", text);
}

Log::Observer Log::setObserver(Observer replacement)
{
    std::lock_guard lock(observerMutex);
    return std::exchange(observer(), std::move(replacement));
}

} // namespace KesLog
