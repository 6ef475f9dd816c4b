#include <KesDriver/net/detail/ServiceText.h>

#include <KesDriver/net/FieldText.h>
#include <KesDriver/net/ValueText.h>
#include <KesDriver/net/detail/DeviceOwner.h>

#include <algorithm>
#include <array>
#include <glib.h>

namespace KesDriver::ServiceText {

namespace {

/// In the order of the answer to *IDN?.
constexpr std::array identityKeys{"Manufacturer", "Model", "SerialNumber", "FirmwareVersion"};
constexpr const char* simulatedKey = "Simulated";

/// Of several entries with a key the first one counts; the case of keys does not.
std::string_view find(const std::vector<std::string>& text, std::string_view key)
{
    for (const std::string_view entry : text)
        if (entry.size() > key.size() && entry[key.size()] == '=' &&
            g_ascii_strncasecmp(entry.data(), key.data(), key.size()) == 0)
            return entry.substr(key.size() + 1);
    return {};
}

/// Neither "this network", nor a group of receivers, nor a broadcast.
bool canBeDevice(const NetAddress& address)
{
    const auto first = address.getBytes().front();
    return first != 0 && first < 224;
}

} // namespace

std::string makeName(const KestoIdentity& identity)
{
    const auto identification = ValueText::writeIdentity(identity);
    const auto fields = FieldText::split(identification, ',', identityKeys.size());
    return fields && fields->size() > 2 ? std::string((*fields)[1]) + ' ' + std::string((*fields)[2])
                                        : "KESTO";
}

std::vector<std::string> write(const KestoIdentity& identity, bool isSimulated)
{
    std::vector<std::string> text;
    const auto identification = ValueText::writeIdentity(identity);
    const auto fields = FieldText::split(identification, ',', identityKeys.size());
    for (std::size_t i = 0; fields && i < fields->size(); ++i)
        text.push_back(std::string(identityKeys[i]) + '=' + std::string((*fields)[i]));
    text.push_back(std::string(simulatedKey) + (isSimulated ? "=1" : "=0"));
    return text;
}

std::optional<FoundDevice> read(const ServiceRecord& service)
{
    std::string identification;
    for (const auto* key : identityKeys) {
        if (!identification.empty())
            identification += ',';
        identification += find(service.text, key);
    }
    const auto identity = ValueText::readIdentity(identification);
    if (!identity || !canBeDevice(service.address))
        return std::nullopt;
    return FoundDevice{service.address, identity->identifer, find(service.text, simulatedKey) == "1", {}};
}

std::optional<FoundDevice> readAnswer(const NetAddress& address, std::string_view answer)
{
    constexpr std::size_t answers = 3;
    const auto parts = FieldText::split(answer, ';', answers);
    if (!parts || parts->size() != answers)
        return std::nullopt;
    const auto identity = ValueText::readIdentity((*parts)[0]);
    const auto isSimulated = FieldText::readFlag((*parts)[1]);
    const auto owner = readOwner((*parts)[2]);
    if (!identity || !isSimulated || !owner)
        return std::nullopt;
    // Somebody without a name is known by the address.
    return FoundDevice{address, identity->identifer, *isSimulated,
                       owner->name.empty() ? owner->address : owner->name};
}

} // namespace KesDriver::ServiceText
