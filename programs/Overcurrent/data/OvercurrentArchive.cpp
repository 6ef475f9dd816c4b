#include <Overcurrent/data/OvercurrentArchive.h>

#include <Overcurrent/data/PlanXml.h>
#include <Overcurrent/data/ResultsXml.h>

#include <KesMeasure/XmlAttributes.h>
#include <KesProgram/archive/ArchiveHelper.h>
#include <KesTestProgram/ArchiveEntries.h>
#include <KesTestProgram/ArchiveInfo.h>

#include <libxml++/libxml++.h>

#include <utility>

namespace Overcurrent {

namespace {

using KesMeasure::readXml;
using KesMeasure::writeXml;
using KesTestProgram::ArchiveEntries;
namespace ArchiveInfo = KesTestProgram::ArchiveInfo;

constexpr const char* planName = "plan.xml";
constexpr const char* outdatedResultsName = "results.xml";

constexpr std::pair<const char*, ArchiveForm> forms[] = {{"3", ArchiveForm::Present},
                                                         {"2", ArchiveForm::Former}};

/// Nothing when the text is not that of an archive of this program.
std::optional<ArchiveForm> readForm(const std::string& text)
{
    const auto found = ArchiveInfo::readForm(text, OvercurrentArchive::program);
    for (const auto& [word, form] : forms)
        if (found == word)
            return form;
    return std::nullopt;
}

bool readTest(const std::string& text, std::optional<TestResults>& results)
{
    auto* const test = results ? &*results : nullptr;
    return ArchiveInfo::readTest(text, test, ResultsXml::toText(test));
}

bool readPlan(const std::string& text, ArchiveForm form, TestPlan& plan)
{
    return readXml(text, "plan", [&](const xmlpp::Element& root) {
        const auto read = PlanXml::read(root, form);
        plan = read.value_or(TestPlan());
        return read.has_value();
    });
}

bool readResults(const std::string& text, ArchiveForm form, std::optional<TestResults>& results)
{
    return readXml(text, "results", [&](const xmlpp::Element& root) {
        const bool isEmpty = root.get_children().empty() && root.get_attributes().empty();
        if (!isEmpty)
            results = ResultsXml::read(root, form);
        return isEmpty || results;
    });
}

/// The settings of a test object of an older form, with defaults for what they do not hold. As they are when
/// they do not hold all that they should: then they are damaged.
std::string convertSettings(const std::string& text)
{
    using namespace KesTree::RelayNodes;
    for (const char* id : {NominalCurrent, SettingCurrent, TimeMultiplier, Curve, DefiniteTime,
                           TolerancePercent, ToleranceMilliseconds})
        if (text.find("id=\"" + std::string(id) + "\"") == std::string::npos)
            return text;
    const auto stage = overcurrentStage();
    return stage->deserialize(text, false) ? stage->serialize() : text;
}

void replaceAll(std::string& text, const std::string& what, const std::string& with)
{
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
        text.replace(at, what.size(), with);
}

/// The signatures of both forms differ in a byte that may be a damaged one, so the entries have a say.
bool isOutdated(const ArchiveEntries& entries)
{
    return !entries.contains(ArchiveEntries::info) && !entries.contains(ArchiveEntries::results) &&
           (entries.contains(outdatedResultsName) ||
            entries.getSignature() == KesProgram::ArchiveHelper::OUTDATED_PREFIX);
}

OvercurrentArchive convertOutdated(const ArchiveEntries& entries)
{
    OvercurrentArchive archive;
    archive.settings = entries.get(ArchiveEntries::settings);
    replaceAll(archive.settings, "id=\"pickupCurrent\"", "id=\"settingCurrent\"");
    archive.settings = convertSettings(archive.settings);
    archive.isPlanLost = !readPlan(entries.get(planName), ArchiveForm::Former, archive.plan);
    const bool isNoTest = readXml(entries.get(outdatedResultsName), "results",
                                  [](const xmlpp::Element& root) { return root.get_children().empty(); });
    archive.areResultsLost = !isNoTest;
    return archive;
}

/// When the entry that tells the form is damaged, each part is what it can be read as.
OvercurrentArchive takeIntactParts(const ArchiveEntries& entries)
{
    const std::string info = entries.get(ArchiveEntries::info);
    const auto told = readForm(info);
    const auto isRead = [&](auto read) {
        return told ? read(*told) : read(ArchiveForm::Present) || read(ArchiveForm::Former);
    };
    OvercurrentArchive archive;
    archive.settings = entries.get(ArchiveEntries::settings);
    if (told != ArchiveForm::Present && archive.settings.find("currentInput") == std::string::npos)
        archive.settings = convertSettings(archive.settings);
    archive.isPlanLost =
        !isRead([&](ArchiveForm form) { return readPlan(entries.get(planName), form, archive.plan); });
    archive.areResultsLost = !isRead([&](ArchiveForm form) {
        return readResults(entries.get(ArchiveEntries::results), form, archive.results);
    });
    if (archive.results) {
        archive.isOriginLost = !told || !readTest(info, archive.results);
        if (archive.isOriginLost)
            static_cast<KesMeasure::TestCircumstances&>(*archive.results) =
                KesMeasure::TestCircumstances::lost();
        if (archive.isPlanLost)
            archive.plan = archive.results->plan;
    }
    return archive;
}

} // namespace

std::unique_ptr<std::istream> OvercurrentArchive::pack() const
{
    const auto* const test = results ? &*results : nullptr;
    const auto resultsText = ResultsXml::toText(test);
    ArchiveEntries entries;
    entries.set(
        ArchiveEntries::info,
        ArchiveInfo::write(program, KesMeasure::wordOf(ArchiveForm::Present, forms), test, resultsText));
    entries.set(ArchiveEntries::settings, settings);
    entries.set(planName, writeXml("plan", [&](xmlpp::Element& root) { PlanXml::write(root, plan); }));
    entries.set(ArchiveEntries::results, resultsText);
    return entries.pack();
}

std::optional<OvercurrentArchive> OvercurrentArchive::read(std::istream& stream)
{
    const auto entries = ArchiveEntries::unpack(stream);
    if (!entries)
        return std::nullopt;
    for (const char* name :
         {ArchiveEntries::info, ArchiveEntries::settings, planName, ArchiveEntries::results})
        if (!entries->contains(name))
            return std::nullopt;
    OvercurrentArchive archive;
    const std::string info = entries->get(ArchiveEntries::info);
    const auto form = readForm(info);
    if (!form || !readPlan(entries->get(planName), *form, archive.plan) ||
        !readResults(entries->get(ArchiveEntries::results), *form, archive.results) ||
        !readTest(info, archive.results))
        return std::nullopt;
    archive.settings = entries->get(ArchiveEntries::settings);
    if (*form == ArchiveForm::Former)
        archive.settings = convertSettings(archive.settings);
    return archive;
}

std::optional<OvercurrentArchive> OvercurrentArchive::repair(std::istream& stream)
{
    const auto entries = ArchiveEntries::recover(stream);
    if (!entries)
        return std::nullopt;
    return isOutdated(*entries) ? convertOutdated(*entries) : takeIntactParts(*entries);
}

} // namespace Overcurrent
