#include <KesTestProgram/TestArchive.h>

#include <KesTestProgram/TestProgramText.h>

#include <KesCommon/FileStream.h>
#include <KesMeasure/XmlAttributes.h>
#include <KesProgram/archive/ArchiveHelper.h>

#include <libxml++/libxml++.h>

#include <cstdint>
#include <functional>
#include <numeric>
#include <sstream>
#include <stdexcept>

namespace KesTestProgram {

namespace {

using KesMeasure::Origin;
using KesMeasure::readXml;
using KesMeasure::setAttribute;
using KesMeasure::TestRecord;
using KesMeasure::writeXml;
using KesMeasure::XmlAttributes;

namespace ArchiveHelper = KesProgram::ArchiveHelper;

/// Above every archive of these programs by far.
constexpr ArchiveHelper::ContentLimits limits{std::uint64_t{4} << 20, std::uint64_t{16} << 20};

constexpr const char* infoName = "info.xml";
constexpr const char* settingsName = "settings.xml";
// The entries lie in the order of their names: the results, which grow, come last, so that a file that was
// cut short still has its settings.
constexpr const char* resultsName = "test-results.xml";

std::string writeInfo(const TestKind& kind, const std::optional<TestRecord>& record)
{
    return writeXml("info", [&](xmlpp::Element& root) {
        setAttribute(root, "program", kind.program);
        setAttribute(root, "format", kind.form);
        if (record)
            record->writeCircumstances(*root.add_child("test"));
    });
}

bool readInfo(const TestKind& kind, const std::string& text, std::optional<TestRecord>& record)
{
    return readXml(text, "info", [&](const xmlpp::Element& root) {
        XmlAttributes attributes(root);
        if (attributes.text("program") != kind.program || attributes.text("format") != kind.form)
            return false;
        const auto* test = dynamic_cast<const xmlpp::Element*>(root.get_first_child("test"));
        return test && record ? record->readCircumstances(*test) : !test && !record;
    });
}

std::string writeResults(const TestKind& kind, const std::optional<TestRecord>& record)
{
    return writeXml("results", [&](xmlpp::Element& root) {
        const auto test = record ? kind.makeTestOf(record->settings) : nullptr;
        if (test)
            record->writeResults(root, test->createPlan());
    });
}

bool readResults(const TestKind& kind, const std::string& text, std::optional<TestRecord>& record)
{
    return readXml(text, "results", [&](const xmlpp::Element& root) {
        if (root.get_children().empty() && root.get_attributes().empty())
            return true;
        const auto test = kind.makeTestOf(TestRecord::readSettings(root).value_or(""));
        if (test)
            record = TestRecord::readResults(root, test->createPlan());
        return record.has_value();
    });
}

/// The text of an entry; nothing when it is missing.
std::optional<std::string> entryText(const ArchiveHelper::DataMap& data, const char* name)
{
    const auto found = data.find(name);
    return found == data.end() ? std::nullopt : Kes::readAtMost(*found->second, limits.entry);
}

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

} // namespace

std::unique_ptr<std::istream> TestArchive::pack(const TestKind& kind) const
{
    ArchiveHelper::DataMap data;
    data[infoName] = std::make_unique<std::stringstream>(writeInfo(kind, record));
    data[settingsName] = std::make_unique<std::stringstream>(settings);
    data[resultsName] = std::make_unique<std::stringstream>(writeResults(kind, record));
    auto stream = std::make_unique<std::stringstream>();
    if (!ArchiveHelper::packDataToStream(*stream, data, ArchiveHelper::PREFIX, limits))
        throw std::runtime_error(lng::TestProgram::get("Error.tooMuchData"));
    return stream;
}

std::optional<TestArchive> TestArchive::read(const TestKind& kind, std::istream& stream)
{
    ArchiveHelper::DataMap data;
    if (!ArchiveHelper::unpackStreamToData(stream, data, ArchiveHelper::PREFIX, limits))
        return std::nullopt;
    const auto info = entryText(data, infoName);
    const auto settings = entryText(data, settingsName);
    const auto results = entryText(data, resultsName);
    if (!info || !settings || !results)
        return std::nullopt;
    TestArchive archive;
    archive.settings = *settings;
    const bool isRead = readResults(kind, *results, archive.record) && readInfo(kind, *info, archive.record);
    return isRead ? std::optional(archive) : std::nullopt;
}

std::optional<TestArchive> TestArchive::repair(const TestKind& kind, std::istream& stream)
{
    const auto signature = readSignature(stream);
    ArchiveHelper::DataMap data;
    if (!signature || !ArchiveHelper::recoverStreamToData(stream, data, *signature, limits))
        return std::nullopt;
    const auto text = [&data](const char* name) { return entryText(data, name).value_or(""); };
    TestArchive archive;
    archive.settings = text(settingsName);
    archive.areResultsLost = !readResults(kind, text(resultsName), archive.record);
    if (archive.record) {
        // Results without their circumstances must not pass for those of a real device.
        archive.isOriginLost = !readInfo(kind, text(infoName), archive.record);
        if (archive.isOriginLost)
            archive.record->origin = Origin::Unknown;
    }
    return archive;
}

} // namespace KesTestProgram
