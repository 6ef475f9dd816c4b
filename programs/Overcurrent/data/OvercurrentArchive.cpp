#include <Overcurrent/data/OvercurrentArchive.h>

#include <Overcurrent/data/InfoXml.h>
#include <Overcurrent/data/PlanXml.h>
#include <Overcurrent/data/ResultsXml.h>
#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/FileStream.h>
#include <KesProgram/archive/ArchiveHelper.h>

#include <KesMeasure/XmlAttributes.h>

#include <libxml++/libxml++.h>

#include <cstdint>
#include <functional>
#include <numeric>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace Overcurrent {

namespace {

using KesMeasure::readXml;
using KesMeasure::writeXml;

namespace ArchiveHelper = KesProgram::ArchiveHelper;

/// Above every archive of this program by far.
constexpr ArchiveHelper::ContentLimits limits{std::uint64_t{4} << 20, std::uint64_t{16} << 20};

constexpr const char* infoName = "info.xml";
constexpr const char* settingsName = "settings.xml";
constexpr const char* planName = "plan.xml";
// The entries lie in the order of their names: the results, which grow, come last, so that a file that was
// cut short still has its settings.
constexpr const char* resultsName = "test-results.xml";
constexpr const char* outdatedResultsName = "results.xml";

/// Nothing when the text is not that of an archive of this program.
std::optional<ArchiveForm> readForm(const std::string& text)
{
    std::optional<ArchiveForm> form;
    (void)readXml(text, "info", [&](const xmlpp::Element& root) {
        form = InfoXml::readForm(root);
        return form.has_value();
    });
    return form;
}

bool readInfo(const std::string& text, std::optional<TestResults>& results)
{
    return readXml(text, "info", [&](const xmlpp::Element& root) { return InfoXml::read(root, results); });
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

/// The text of an entry; nothing when it is missing.
std::optional<std::string> entryText(const ArchiveHelper::DataMap& data, const char* name)
{
    const auto found = data.find(name);
    return found == data.end() ? std::nullopt : Kes::readAtMost(*found->second, limits.entry);
}

void replaceAll(std::string& text, const std::string& what, const std::string& with)
{
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
        text.replace(at, what.size(), with);
}

/// What stands in place of the signature, when it is one of the two but for a few damaged bytes.
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

/// The signatures of both forms differ in a byte that may be a damaged one, so the entries have a say.
bool isOutdated(const ArchiveHelper::DataMap& data, const std::string& signature)
{
    return !data.contains(infoName) && !data.contains(resultsName) &&
           (data.contains(outdatedResultsName) || signature == ArchiveHelper::OUTDATED_PREFIX);
}

OvercurrentArchive convertOutdated(const ArchiveHelper::DataMap& data)
{
    OvercurrentArchive archive;
    archive.settings = entryText(data, settingsName).value_or("");
    replaceAll(archive.settings, "id=\"pickupCurrent\"", "id=\"settingCurrent\"");
    archive.settings = convertSettings(archive.settings);
    archive.isPlanLost = !readPlan(entryText(data, planName).value_or(""), ArchiveForm::Former, archive.plan);
    const bool isNoTest = readXml(entryText(data, outdatedResultsName).value_or(""), "results",
                                  [](const xmlpp::Element& root) { return root.get_children().empty(); });
    archive.areResultsLost = !isNoTest;
    return archive;
}

/// When the entry that tells the form is damaged, each part is what it can be read as.
OvercurrentArchive takeIntactParts(const ArchiveHelper::DataMap& data)
{
    // A stream can be read once only.
    const auto take = [&data](const char* name) { return entryText(data, name).value_or(""); };
    const std::string info = take(infoName);
    const std::string plan = take(planName);
    const std::string results = take(resultsName);
    const auto told = readForm(info);
    const auto isRead = [&](auto read) {
        return told ? read(*told) : read(ArchiveForm::Present) || read(ArchiveForm::Former);
    };
    OvercurrentArchive archive;
    archive.settings = take(settingsName);
    if (told != ArchiveForm::Present && archive.settings.find("currentInput") == std::string::npos)
        archive.settings = convertSettings(archive.settings);
    archive.isPlanLost = !isRead([&](ArchiveForm form) { return readPlan(plan, form, archive.plan); });
    archive.areResultsLost =
        !isRead([&](ArchiveForm form) { return readResults(results, form, archive.results); });
    if (archive.results) {
        // Results without their circumstances must not pass for those of a real device.
        archive.isOriginLost = !readInfo(info, archive.results);
        if (archive.isOriginLost)
            archive.results->origin = Origin::Unknown;
        if (archive.isPlanLost)
            archive.plan = archive.results->plan;
    }
    return archive;
}

} // namespace

std::unique_ptr<std::istream> OvercurrentArchive::pack() const
{
    ArchiveHelper::DataMap data;
    const auto add = [&](const char* name, std::string text) {
        data[name] = std::make_unique<std::stringstream>(std::move(text));
    };
    add(infoName, writeXml("info", [&](xmlpp::Element& root) { InfoXml::write(root, results); }));
    add(settingsName, settings);
    add(planName, writeXml("plan", [&](xmlpp::Element& root) { PlanXml::write(root, plan); }));
    add(resultsName, writeXml("results", [&](xmlpp::Element& root) {
            if (results)
                ResultsXml::write(root, *results);
        }));
    auto stream = std::make_unique<std::stringstream>();
    if (!ArchiveHelper::packDataToStream(*stream, data, ArchiveHelper::PREFIX, limits))
        throw std::runtime_error(lng::Overcurrent::get("Error.tooMuchData"));
    return stream;
}

std::optional<OvercurrentArchive> OvercurrentArchive::read(std::istream& stream)
{
    ArchiveHelper::DataMap data;
    if (!ArchiveHelper::unpackStreamToData(stream, data, ArchiveHelper::PREFIX, limits))
        return std::nullopt;
    const auto info = entryText(data, infoName);
    const auto settings = entryText(data, settingsName);
    const auto plan = entryText(data, planName);
    const auto results = entryText(data, resultsName);
    if (!info || !settings || !plan || !results)
        return std::nullopt;
    OvercurrentArchive archive;
    const auto form = readForm(*info);
    if (!form || !readPlan(*plan, *form, archive.plan) || !readResults(*results, *form, archive.results) ||
        !readInfo(*info, archive.results))
        return std::nullopt;
    archive.settings = *form == ArchiveForm::Former ? convertSettings(*settings) : *settings;
    return archive;
}

std::optional<OvercurrentArchive> OvercurrentArchive::repair(std::istream& stream)
{
    const auto signature = readSignature(stream);
    ArchiveHelper::DataMap data;
    if (!signature || !ArchiveHelper::recoverStreamToData(stream, data, *signature, limits))
        return std::nullopt;
    return isOutdated(data, *signature) ? convertOutdated(data) : takeIntactParts(data);
}

} // namespace Overcurrent
