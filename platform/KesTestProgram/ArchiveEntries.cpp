#include <KesTestProgram/ArchiveEntries.h>

#include <KesTestProgram/TestProgramText.h>

#include <KesCommon/FileStream.h>
#include <KesProgram/archive/ArchiveHelper.h>

#include <cstdint>
#include <functional>
#include <numeric>
#include <sstream>
#include <stdexcept>

namespace KesTestProgram {

namespace {

namespace ArchiveHelper = KesProgram::ArchiveHelper;

/// Above every archive of these programs by far.
constexpr ArchiveHelper::ContentLimits limits{std::uint64_t{4} << 20, std::uint64_t{16} << 20};

/// What stands in place of the signature, when it is that but for a few damaged bytes.
std::optional<std::string> readSignature(std::istream& stream)
{
    constexpr std::size_t mostDamaged = 3;
    const std::string& expected = ArchiveHelper::PREFIX;
    std::string found(expected.size(), '\0');
    stream.clear();
    stream.seekg(0);
    stream.read(found.data(), static_cast<std::streamsize>(found.size()));
    const auto same = std::inner_product(found.begin(), found.end(), expected.begin(), std::size_t{0},
                                         std::plus<>(), std::equal_to<>());
    return same + mostDamaged >= expected.size() ? std::optional(found) : std::nullopt;
}

std::map<std::string, std::string> readTexts(const ArchiveHelper::DataMap& data)
{
    std::map<std::string, std::string> texts;
    for (const auto& [name, stream] : data)
        if (auto text = Kes::readAtMost(*stream, limits.entry))
            texts[name] = std::move(*text);
    return texts;
}

} // namespace

std::string ArchiveEntries::get(const std::string& name) const
{
    const auto found = _texts.find(name);
    return found == _texts.end() ? std::string() : found->second;
}

std::unique_ptr<std::istream> ArchiveEntries::pack() const
{
    ArchiveHelper::DataMap data;
    for (const auto& [name, text] : _texts)
        data[name] = std::make_unique<std::stringstream>(text);
    auto stream = std::make_unique<std::stringstream>();
    if (!ArchiveHelper::packDataToStream(*stream, data, ArchiveHelper::PREFIX, limits))
        throw std::runtime_error(lng::TestProgram::get("Error.tooMuchData"));
    return stream;
}

std::optional<ArchiveEntries> ArchiveEntries::unpack(std::istream& stream)
{
    ArchiveHelper::DataMap data;
    if (!ArchiveHelper::unpackStreamToData(stream, data, ArchiveHelper::PREFIX, limits))
        return std::nullopt;
    ArchiveEntries entries;
    entries._texts = readTexts(data);
    entries._signature = ArchiveHelper::PREFIX;
    return entries;
}

std::optional<ArchiveEntries> ArchiveEntries::recover(std::istream& stream)
{
    const auto signature = readSignature(stream);
    ArchiveHelper::DataMap data;
    if (!signature || !ArchiveHelper::recoverStreamToData(stream, data, *signature, limits))
        return std::nullopt;
    ArchiveEntries entries;
    entries._texts = readTexts(data);
    entries._signature = *signature;
    return entries;
}

} // namespace KesTestProgram
