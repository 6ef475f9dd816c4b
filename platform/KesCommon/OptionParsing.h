#pragma once

#include <KesCommon/Export.h>

#include <string>

namespace Glib {
class OptionContext;
}

namespace Kes {

/// Parses the arguments of `main`, and removes from them what the context's options have taken. What is wrong
/// with them is told as a sentence in the language of the process, while GLib's own messages follow the
/// locale; empty when all is well. "--help" ends the process. Any thread, once the language is set.
KES_EXPORT std::string parseOptions(Glib::OptionContext& context, int& argc, char**& argv);

} // namespace Kes
