#pragma once

#include <KesCommon/Export.h>

#include <functional>
#include <string>

namespace KesLog {

/// The log of the family's programs: GLib's structured log, domain "Kes" (standard error or the journal).
/// Writing never throws and never ends the program. Any thread.
class KES_EXPORT Log {
public:
    enum class Level { Info, Warn, Error };
    using Observer = std::function<void(Level, const std::string&)>;

    /// Shown only when asked for: G_MESSAGES_DEBUG=Kes.
    static void writeInfo(const std::string& text);
    /// Something that the user is not bothered with went wrong.
    static void writeWarn(const std::string& text);
    /// Something that was asked for could not be done.
    static void writeError(const std::string& text);

    /// Shows every later text to the observer as well, on the writing thread; null for none.
    /// Returns the observer so far.
    static Observer setObserver(Observer observer);
};

} // namespace KesLog
