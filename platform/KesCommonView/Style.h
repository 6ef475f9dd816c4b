#pragma once

#include <KesCommon/Export.h>

#include <initializer_list>
#include <string>

namespace KesView {

/// The style sheets of the family. GUI thread.
class KES_EXPORT Style {
public:
    /// Loads a style sheet from the themes directory for the whole screen; each name is loaded once.
    /// URLs in it are relative to its own place. A missing one, and each rule that cannot be read, writes
    /// a warning to the log and changes nothing else.
    static void setStyle(const std::string& name);
    /// Several at once, which takes less time than one after the other; later ones have precedence.
    static void setStyle(std::initializer_list<std::string> names);
};

} // namespace KesView
