#pragma once

#include <KesDriver/net/IServiceBrowser.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a device says of itself when it announces itself, and when a search asks it. Any thread.
namespace KesDriver::ServiceText {

inline constexpr const char* serviceType = "_scpi-raw._tcp";

/// Such as "KESTO-3 00017".
std::string makeName(const KestoIdentity& identity);
/// The entries that stand beside the announced service.
std::vector<std::string> write(const KestoIdentity& identity, bool isSimulated);
/// Nothing for a service of something else than a KESTO.
std::optional<FoundDevice> read(const ServiceRecord& service);

/// What a device is asked, with its line end.
inline constexpr const char* question = "*IDN?;:SYST:SIM?;:SYST:CONT:OWN?\n";
/// Nothing for what no KESTO would answer.
std::optional<FoundDevice> readAnswer(const NetAddress& address, std::string_view answer);

} // namespace KesDriver::ServiceText
