#pragma once

#include <KesCommon/Export.h>

#include <string>

namespace KesProgram {

/// The base name of a help file for a model class: the name without the suffix "Model" and then without the
/// suffix "Program", each taken off once if it is there. For concrete programs. Any thread.
KES_EXPORT std::string _getBaseHelpName(const std::string& name);

} // namespace KesProgram
