#include <KesTestProgram/TestArchive.h>

#include <KesTestProgram/ArchiveEntries.h>
#include <KesTestProgram/ArchiveInfo.h>

#include <KesMeasure/XmlAttributes.h>

#include <libxml++/libxml++.h>

namespace KesTestProgram {

namespace {

using KesMeasure::readXml;
using KesMeasure::TestRecord;
using KesMeasure::writeXml;

KesMeasure::MeasuredTest* testOf(std::optional<TestRecord>& record)
{
    return record ? &*record : nullptr;
}

std::string writeResults(const TestKind& kind, const std::optional<TestRecord>& record)
{
    const auto test = record ? kind.makeTestOf(record->settings) : nullptr;
    return test ? record->getResultsXml(test->createPlan())
                : writeXml("results", [](const xmlpp::Element&) {});
}

bool readInfo(const TestKind& kind, const std::string& text, std::optional<TestRecord>& record)
{
    return ArchiveInfo::readForm(text, kind.program) == kind.form &&
           ArchiveInfo::readTest(text, testOf(record), writeResults(kind, record));
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

} // namespace

std::unique_ptr<std::istream> TestArchive::pack(const TestKind& kind) const
{
    const auto results = writeResults(kind, record);
    ArchiveEntries entries;
    entries.set(ArchiveEntries::info,
                ArchiveInfo::write(kind.program, kind.form, record ? &*record : nullptr, results));
    entries.set(ArchiveEntries::settings, settings);
    entries.set(ArchiveEntries::results, results);
    return entries.pack();
}

std::optional<TestArchive> TestArchive::read(const TestKind& kind, std::istream& stream)
{
    const auto entries = ArchiveEntries::unpack(stream);
    if (!entries)
        return std::nullopt;
    for (const char* name : {ArchiveEntries::info, ArchiveEntries::settings, ArchiveEntries::results})
        if (!entries->contains(name))
            return std::nullopt;
    TestArchive archive;
    archive.settings = entries->get(ArchiveEntries::settings);
    const bool isRead = readResults(kind, entries->get(ArchiveEntries::results), archive.record) &&
                        readInfo(kind, entries->get(ArchiveEntries::info), archive.record);
    return isRead ? std::optional(archive) : std::nullopt;
}

std::optional<TestArchive> TestArchive::repair(const TestKind& kind, std::istream& stream)
{
    const auto entries = ArchiveEntries::recover(stream);
    if (!entries)
        return std::nullopt;
    TestArchive archive;
    archive.settings = entries->get(ArchiveEntries::settings);
    archive.areResultsLost = !readResults(kind, entries->get(ArchiveEntries::results), archive.record);
    if (archive.record) {
        archive.isOriginLost = !readInfo(kind, entries->get(ArchiveEntries::info), archive.record);
        if (archive.isOriginLost)
            static_cast<KesMeasure::TestCircumstances&>(*archive.record) =
                KesMeasure::TestCircumstances::lost();
    }
    return archive;
}

} // namespace KesTestProgram
