#include <Overcurrent/data/OvercurrentArchive.h>

#include <Overcurrent/data/PlanXml.h>
#include <Overcurrent/data/ResultsXml.h>

#include <KesMeasure/XmlAttributes.h>
#include <KesProgram/archive/ArchiveHelper.h>
#include <KesTestProgram/ArchiveEntries.h>
#include <KesTestProgram/ArchiveInfo.h>

#include <libxml++/libxml++.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace Overcurrent {

namespace {

using KesMeasure::readXml;
using KesMeasure::writeXml;
using KesTestProgram::ArchiveEntries;
namespace ArchiveInfo = KesTestProgram::ArchiveInfo;

constexpr const char* planName = "plan.xml";
constexpr const char* outdatedResultsName = "results.xml";

/// The present one first.
constexpr std::pair<const char*, ArchiveForm> forms[] = {
    {"4", ArchiveForm::Present}, {"3", ArchiveForm::Third}, {"2", ArchiveForm::Second}};

/// Nothing when the text is not that of an archive of this program.
std::optional<ArchiveForm> readForm(const std::string& text)
{
    const auto found = ArchiveInfo::readForm(text, OvercurrentArchive::program);
    for (const auto& [word, form] : forms)
        if (found == word)
            return form;
    return std::nullopt;
}

/// The checksum of an older form is that of its own text.
bool readTest(const std::string& text, ArchiveForm form, const std::string& resultsText,
              std::optional<TestResults>& results)
{
    auto* const test = results ? &*results : nullptr;
    return ArchiveInfo::readTest(text, test,
                                 form == ArchiveForm::Present ? ResultsXml::toText(test) : resultsText);
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

using namespace KesTree::RelayNodes;

constexpr const char* formerStageIds[] = {StageSetting, StageMultiplier, StageCurve, StageTime};

bool holds(const std::string& settings, const std::string& id)
{
    return settings.find("id=\"" + id + "\"") != std::string::npos;
}

/// The older forms have the values of their only stage beside those of the relay.
std::string moveIntoStage(const std::string& text)
{
    std::string moved = text;
    if (holds(text, OvercurrentStages[0]))
        return moved;
    (void)readXml(text, "tree", [&](const xmlpp::Element& root) {
        const auto* relay = dynamic_cast<const xmlpp::Element*>(root.get_first_child("group"));
        if (!relay)
            return false;
        moved = writeXml("tree", [&](xmlpp::Element& tree) {
            tree.set_attribute("version", root.get_attribute_value("version"));
            auto& group = *tree.add_child("group");
            group.set_attribute("id", relay->get_attribute_value("id"));
            auto& stage = *group.add_child("group");
            stage.set_attribute("id", OvercurrentStages[0]);
            for (const auto* child : relay->get_children()) {
                const auto* value = dynamic_cast<const xmlpp::Element*>(child);
                if (!value)
                    continue;
                const std::string id = value->get_attribute_value("id");
                const bool isOfStage = std::find(std::begin(formerStageIds), std::end(formerStageIds), id) !=
                                       std::end(formerStageIds);
                (isOfStage ? stage : group).import_node(value);
            }
        });
        return true;
    });
    return moved;
}

bool isComplete(const std::string& settings, ArchiveForm form)
{
    const auto holdsIt = [&](const char* id) { return holds(settings, id); };
    constexpr const char* ofSecond[] = {NominalCurrent, TolerancePercent, ToleranceMilliseconds};
    constexpr const char* ofThird[] = {"toleranceKind",     "currentTolerance",    "tripInput",
                                       "rampContact",       "startInput",          "debounce",
                                       "resetTime",         "continuousWithstand", "tenSecondWithstand",
                                       "oneSecondWithstand"};
    return std::all_of(std::begin(formerStageIds), std::end(formerStageIds), holdsIt) &&
           std::all_of(std::begin(ofSecond), std::end(ofSecond), holdsIt) &&
           (form == ArchiveForm::Second || std::all_of(std::begin(ofThird), std::end(ofThird), holdsIt));
}

/// The settings of a test object of an older form, with defaults for what it does not hold. When they do not
/// hold all that they should, they are damaged and stay so.
std::string convertSettings(const std::string& text, ArchiveForm form)
{
    const auto moved = moveIntoStage(text);
    const auto relay = overcurrentStage();
    const bool isConverted =
        isComplete(moved, form) && RelaySettings().putInto(*relay) && relay->deserialize(moved, false);
    return isConverted ? relay->serialize() : moved;
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
    archive.settings = convertSettings(archive.settings, ArchiveForm::Second);
    archive.isPlanLost = !readPlan(entries.get(planName), ArchiveForm::Second, archive.plan);
    const bool isNoTest = readXml(entries.get(outdatedResultsName), "results",
                                  [](const xmlpp::Element& root) { return root.get_children().empty(); });
    archive.areResultsLost = !isNoTest;
    return archive;
}

/// When the entry with the number of the form is damaged, each part is what it can be read as.
OvercurrentArchive takeIntactParts(const ArchiveEntries& entries)
{
    const std::string info = entries.get(ArchiveEntries::info);
    const auto told = readForm(info);
    const auto isRead = [&](auto read) {
        return told ? read(*told)
                    : read(ArchiveForm::Present) || read(ArchiveForm::Third) || read(ArchiveForm::Second);
    };
    OvercurrentArchive archive;
    archive.settings = entries.get(ArchiveEntries::settings);
    const bool isFormer =
        told ? *told != ArchiveForm::Present : !holds(archive.settings, OvercurrentStages[0]);
    const auto likely = holds(archive.settings, "currentInput") ? ArchiveForm::Third : ArchiveForm::Second;
    if (isFormer)
        archive.settings = convertSettings(archive.settings, told.value_or(likely));
    archive.isPlanLost =
        !isRead([&](ArchiveForm form) { return readPlan(entries.get(planName), form, archive.plan); });
    archive.areResultsLost = !isRead([&](ArchiveForm form) {
        return readResults(entries.get(ArchiveEntries::results), form, archive.results);
    });
    if (archive.results) {
        archive.isOriginLost =
            !told || !readTest(info, *told, entries.get(ArchiveEntries::results), archive.results);
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
        !readTest(info, *form, entries->get(ArchiveEntries::results), archive.results))
        return std::nullopt;
    archive.settings = entries->get(ArchiveEntries::settings);
    if (*form != ArchiveForm::Present)
        archive.settings = convertSettings(archive.settings, *form);
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
