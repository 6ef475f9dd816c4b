#include <KesProgram/recovery/RecoveryCopy.h>

#include <glibmm/checksum.h>
#include <glibmm/keyfile.h>
#include <glibmm/uriutils.h>

#include <algorithm>
#include <sstream>

namespace KesProgram {

namespace {

constexpr const char* magic = "kes-recovery-copy-1";
constexpr const char* group = "Copy";
/// In the year 9000.
constexpr std::int64_t latestTime = 221876841600;

std::string checksum(const std::string& bytes)
{
    return Glib::Checksum::compute_checksum(Glib::Checksum::CHECKSUM_SHA256, bytes);
}

/// A path may hold any bytes, a key file only UTF-8.
std::string escaped(const std::string& text)
{
    return Glib::uri_escape_string(text, "/", false);
}

std::string describe(const RecoveryCopy& copy)
{
    Glib::KeyFile description;
    description.set_string(group, "Program", escaped(copy.program));
    description.set_string(group, "File", escaped(copy.fileName));
    description.set_string(group, "Holds", escaped(copy.holds));
    description.set_int64(group, "Time", copy.time);
    return description.to_data();
}

RecoveryCopy readDescription(const std::string& text)
{
    Glib::KeyFile description;
    description.load_from_data(text);
    const auto value = [&](const char* key) {
        return Glib::uri_unescape_string(description.get_string(group, key));
    };
    // A date that can be shown, whatever the clock said.
    const auto time = std::clamp<std::int64_t>(description.get_int64(group, "Time"), 0, latestTime);
    return {value("Program"), value("File"), value("Holds"), time, {}};
}

} // namespace

std::string RecoveryCopy::toFile() const
{
    const std::string description = describe(*this);
    const std::string body = description + bytes;
    return std::string(magic) + ' ' + checksum(body) + ' ' + std::to_string(description.size()) + '\n' + body;
}

std::optional<RecoveryCopy> RecoveryCopy::fromFile(const std::string& content)
{
    const auto endOfHead = content.find('\n');
    if (!content.starts_with(magic) || endOfHead == std::string::npos)
        return std::nullopt;
    std::istringstream head(content.substr(0, endOfHead));
    std::string kind, sum;
    std::size_t descriptionSize = 0;
    const std::string body = content.substr(endOfHead + 1);
    if (!(head >> kind >> sum >> descriptionSize) || kind != magic || descriptionSize > body.size() ||
        sum != checksum(body))
        return std::nullopt;
    try {
        auto copy = readDescription(body.substr(0, descriptionSize));
        copy.bytes = body.substr(descriptionSize);
        return copy;
    } catch (const Glib::Error&) {
        return std::nullopt;
    }
}

} // namespace KesProgram
