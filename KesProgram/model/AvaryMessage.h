#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/KesAvary.h>

#include <string>

namespace KesProgram {

/// The text about a fault for the user: a title line with the device, then one line per fault of the
/// device and of each channel, in the language of the process. A channel without a name is called "???".
/// No newline at the end. Any thread.
KES_EXPORT std::string _createAvaryMessage(KesDriver::KesAvary& avary);

} // namespace KesProgram
