#pragma once

#include <KesDriver/KestoIdentifer.h>

#include <string>

/// How devices are described in their windows, in the language of the process. Any thread.
namespace KesDevice {

/// Such as "KESTO-3 No. 00017, simulated".
std::string describeDevice(const KesDriver::KestoIdentifer& identifer, bool isSimulated);

/// Such as "in use by Anna", whatever the name consists of; empty without a name.
std::string describeUse(const std::string& owner);

} // namespace KesDevice
