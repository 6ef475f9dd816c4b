#include <Overcurrent/data/Evaluation.h>
#include <Overcurrent/data/OvercurrentArchive.h>
#include <Overcurrent/data/TestOutcome.h>
#include <Overcurrent/model/OvercurrentModel.h>

#include <KesProgram/archive/ArchiveHelper.h>
#include <KesTreeRelay/Nameplate.h>

#include <support/TemporaryHome.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

using namespace Overcurrent;
namespace ArchiveHelper = KesProgram::ArchiveHelper;
namespace Nodes = KesTree::RelayNodes;

namespace {

TestResults someResults()
{
    TestResults results;
    results.settings[StageId::First].settingCurrent = 0.75;
    results.settings.resetTime = 3.0;
    results.settings.toleranceKind = TimeToleranceKind::AssignedError;
    results.settings[StageId::Second].isUsed = true;
    results.settings[StageId::Second].settingCurrent = 9.0;
    results.settings[StageId::Second].direction = DirectionKind::ReverseOnly;
    results.settings[StageId::Residual].table = {{1.5, 3.25}, {4.0, 1.0}};
    results.plan.multiples = {2.0, 3.1, 5.0};
    results.points = {{{Fault::A, 2.0}, MeasureState::Measured, std::chrono::microseconds(10234567)},
                      {{Fault::A, 3.1}, MeasureState::NoOperation, {}},
                      {{Fault::A, 5.0}, MeasureState::ContactEarly, {}}};
    results.pickUp = RampResult{MeasureState::Measured, 1.01, 1.0};
    results.dropOff = RampResult{MeasureState::NoOperation, 0.0};
    results.end = RunEnd::Complete;
    results.device = "KESTO-3 No. 00017 <&\">";
    results.origin = Origin::Simulated;
    results.startedAt = "2024-03-01 14:05:09";
    return results;
}

std::string textOf(std::istream& stream)
{
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

OvercurrentArchive someArchive()
{
    OvercurrentModel model;
    EXPECT_TRUE(model.getTestObject()->find(Nodes::SettingCurrent)->setValue(0.9));
    OvercurrentArchive archive;
    archive.settings = model.getTestObject()->serialize();
    archive.plan.multiples = {1.7, 4.0};
    archive.plan.dropOff.dwell = 0.3;
    archive.plan.goesOn = true;
    archive.plan.faults = {Fault::CA, Fault::N};
    archive.plan.direction = FaultDirection::Reverse;
    archive.results = someResults();
    return archive;
}

/// The streams of an archive, for a test to change.
std::map<std::string, std::string> entriesOf(const OvercurrentArchive& archive)
{
    ArchiveHelper::DataMap data;
    EXPECT_TRUE(ArchiveHelper::unpackStreamToData(*archive.pack(), data, ArchiveHelper::PREFIX));
    std::map<std::string, std::string> entries;
    for (const auto& [name, stream] : data)
        entries[name] = textOf(*stream);
    return entries;
}

std::stringstream packed(const std::map<std::string, std::string>& entries, const std::string& prefix)
{
    ArchiveHelper::DataMap data;
    for (const auto& [name, text] : entries)
        data[name] = std::make_unique<std::stringstream>(text);
    std::stringstream stream;
    EXPECT_TRUE(ArchiveHelper::packDataToStream(stream, data, prefix));
    return stream;
}

void replace(std::string& text, const std::string& what, const std::string& with)
{
    const auto at = text.find(what);
    ASSERT_NE(at, std::string::npos) << what << " in\n" << text;
    text.replace(at, what.size(), with);
}

} // namespace

TEST(OvercurrentArchiveTest, ComesBackAsItWasAndWithTheSameBytes)
{
    for (const bool hasResults : {true, false}) {
        auto archive = someArchive();
        if (!hasResults)
            archive.results.reset();
        const auto read = OvercurrentArchive::read(*archive.pack());
        ASSERT_TRUE(read);
        EXPECT_EQ(read->settings, archive.settings);
        EXPECT_EQ(read->plan, archive.plan);
        EXPECT_EQ(read->results, archive.results);
        EXPECT_EQ(textOf(*read->pack()), textOf(*archive.pack()));
    }
}

TEST(OvercurrentArchiveTest, ResultsThatWereChangedByHandSaySo)
{
    auto entries = entriesOf(someArchive());
    replace(entries["test-results.xml"], "microseconds=\"10234567\"", "microseconds=\"10034567\"");
    auto stream = packed(entries, ArchiveHelper::PREFIX);
    const auto read = OvercurrentArchive::read(stream);
    ASSERT_TRUE(read && read->results);
    EXPECT_TRUE(read->results->isChangedByHand());
    EXPECT_TRUE(OvercurrentArchive::read(*read->pack())->results->isChangedByHand());
    EXPECT_THAT(TestOutcome::create(&*read->results).text, testing::HasSubstr("changed by hand"));
}

TEST(OvercurrentModelArchiveTest, AnArchiveFromBeforeNameplateAndChecksumIsWhole)
{
    auto entries = entriesOf(someArchive());
    auto& settings = entries["settings.xml"];
    const auto group = settings.find("<group id=\"nameplate\">");
    ASSERT_NE(group, std::string::npos);
    settings.erase(group, settings.find("</group>", group) + 8 - group);
    auto& info = entries["info.xml"];
    const auto checksum = info.find(" checksum=\"");
    ASSERT_NE(checksum, std::string::npos);
    info.erase(checksum, info.find('"', checksum + 11) + 1 - checksum);
    for (const bool repair : {false, true}) {
        OvercurrentModel model;
        model.signalMessage.connect([](const std::string& text) { ADD_FAILURE() << text; });
        auto& comment = *model.getTestObject()->find(KesTree::Nameplate::Comment);
        ASSERT_TRUE(comment.setText("of another file"));
        auto stream = packed(entries, ArchiveHelper::PREFIX);
        ASSERT_TRUE(model.setDataStream(stream, repair));
        EXPECT_EQ(comment.getText(), "");
        EXPECT_EQ(model.getSettings()[StageId::First].settingCurrent, 0.9);
        auto former = someResults();
        former.foreignChecksum = "";
        EXPECT_EQ(model.getResults(), former);
        EXPECT_FALSE(former.isChangedByHand());
    }
}

TEST(OvercurrentArchiveTest, ATestUnderWayIsKeptAsAStoppedOne)
{
    auto archive = someArchive();
    archive.results->end = RunEnd::Running;
    archive.results->dropOff.reset();
    EXPECT_EQ(OvercurrentArchive::read(*archive.pack())->results->end, RunEnd::Stopped);
}

TEST(OvercurrentArchiveTest, WhatCouldNotBeReadAgainIsNotPacked)
{
    auto archive = someArchive();
    archive.results->device = std::string(std::size_t{5} << 20, 'x');
    EXPECT_THROW(archive.pack(), std::runtime_error) << "an empty file would replace the former one";
}

TEST(OvercurrentArchiveTest, RefusesWhatIsMissingOrMakesNoSense)
{
    struct {
        const char* entry;
        const char* what;
        const char* with;
    } const cases[] = {
        {"info.xml", "format=\"4\"", "format=\"5\""},
        {"plan.xml", " goesOn=\"true\"", ""},
        {"test-results.xml", "tripInput=\"1\"", "tripInput=\"2\""},
        {"test-results.xml", " without=\"1\"", ""},
        {"info.xml", "simulated=\"true\"", "simulated=\"perhaps\""},
        {"plan.xml", "multiple=\"1.7\"", "multiple=\"1.04\""},
        {"plan.xml", "<?xml", "<!DOCTYPE plan [<!ENTITY a \"b\">]><?xml"},
        {"test-results.xml", "microseconds=\"10234567\"", "microseconds=\"999999999999\""},
        {"test-results.xml", "curve=\"standardInverse\"", "curve=\"straight\""},
        {"test-results.xml", "fault=\"A\"", "fault=\"B\""},
        {"test-results.xml", "table=\"1.5:3.25; 4:1\"", "table=\"1.5:3.25; 1.4:1\""},
        {"test-results.xml", "used=\"true\"", "used=\"perhaps\""},
        {"plan.xml", "faults=\"CA N\"", "faults=\"CA NN\""},
        {"plan.xml", "outputsPerPhase=\"1\"", "outputsPerPhase=\"4\""},
        // Such a relay takes longer than the plan waits.
        {"test-results.xml", "timeMultiplier=\"1\"", "timeMultiplier=\"9\""},
    };
    const auto whole = entriesOf(someArchive());
    for (const auto& test : cases) {
        auto entries = whole;
        replace(entries.at(test.entry), test.what, test.with);
        auto stream = packed(entries, ArchiveHelper::PREFIX);
        EXPECT_FALSE(OvercurrentArchive::read(stream)) << test.entry << ": " << test.with;
    }
    for (const auto& [name, text] : whole) {
        auto entries = whole;
        entries.erase(name);
        auto stream = packed(entries, ArchiveHelper::PREFIX);
        EXPECT_FALSE(OvercurrentArchive::read(stream)) << "without " << name;
    }
}

TEST(OvercurrentArchiveTest, RepairKeepsWhatCanBeRead)
{
    const auto whole = entriesOf(someArchive());
    const auto repairedWithout = [&](const std::string& name) {
        auto entries = whole;
        entries[name] = "<broken";
        auto stream = packed(entries, ArchiveHelper::PREFIX);
        return OvercurrentArchive::repair(stream);
    };
    EXPECT_EQ(repairedWithout("plan.xml")->plan, someResults().plan);
    EXPECT_EQ(repairedWithout("plan.xml")->results, someResults());
    EXPECT_FALSE(repairedWithout("test-results.xml")->results);
    EXPECT_EQ(repairedWithout("test-results.xml")->plan, someArchive().plan);
    EXPECT_EQ(repairedWithout("settings.xml")->results, someResults());
    // Whether they come from a simulated device is not known any more, then and after saving.
    auto unknown = someResults();
    unknown.origin = Origin::Unknown;
    unknown.device.clear();
    unknown.startedAt.clear();
    unknown.foreignChecksum = "";
    EXPECT_EQ(repairedWithout("info.xml")->results, unknown);
    EXPECT_EQ(OvercurrentArchive::read(*repairedWithout("info.xml")->pack())->results, unknown);
}

TEST(OvercurrentModelArchiveTest, AChangedByteCostsOnePartAtMostAndThatIsNamed)
{
    const std::string whole = textOf(*someArchive().pack());
    const auto end = whole.rfind("PK\5\6") + 22;
    OvercurrentModel model;
    std::string said;
    model.signalMessage.connect([&](const std::string& text) { said += text + "\n"; });
    for (std::size_t at = 0; at < end; at += at < 100 ? 1 : 3) {
        auto damaged = whole;
        damaged[at] = static_cast<char>(damaged[at] ^ (at < 100 ? 0x01 : 0x55));
        std::stringstream stream(damaged);
        said.clear();
        ASSERT_TRUE(model.setDataStream(stream, true)) << at;
        const bool areSettingsWhole = model.getSettings()[StageId::First].settingCurrent == 0.9;
        const bool isPlanWhole = model.getPlan() == someArchive().plan;
        const auto results = model.getResults();
        const bool isOriginWhole = results && results->origin == Origin::Simulated;
        EXPECT_GE(areSettingsWhole + isPlanWhole + results.has_value() + (isOriginWhole || !results), 3)
            << at;
        EXPECT_EQ(std::count(said.begin(), said.end(), '\n'),
                  !areSettingsWhole + !isPlanWhole + !results + (results && !isOriginWhole))
            << at << ": " << said;
        EXPECT_TRUE(areSettingsWhole || model.getSettings() == someResults().settings) << at;
    }
}

TEST(OvercurrentArchiveTest, NoTruncationIsTakenForAWholeArchive)
{
    const std::string whole = textOf(*someArchive().pack());
    // Behind the last of the four entries there is only the directory of the archive.
    const auto directory = whole.find("PK\x01\x02");
    std::size_t repaired = 0;
    for (std::size_t length = 0; length < directory; length += 7) {
        std::stringstream stream(whole.substr(0, length));
        EXPECT_FALSE(OvercurrentArchive::read(stream)) << length;
        repaired += OvercurrentArchive::repair(stream).has_value();
    }
    EXPECT_GT(repaired, 0u);
}

TEST(OvercurrentModelArchiveTest, HostileEntriesAreRefusedAndRepairedInAMoment)
{
    std::string attributes;
    for (int i = 0; i < 40000; ++i)
        attributes += " a" + std::to_string(i) + "=\"\"";
    std::string elements;
    for (int i = 0; i < 1000000; ++i)
        elements += "<a/>";
    OvercurrentModel model;
    for (const auto& hostile : {"<plan" + attributes + "/>", "<plan>" + elements + "</plan>"}) {
        auto entries = entriesOf(someArchive());
        entries["plan.xml"] = hostile;
        auto stream = packed(entries, ArchiveHelper::PREFIX);
        for (const bool repair : {false, true}) {
            const auto start = std::chrono::steady_clock::now();
            EXPECT_EQ(model.setDataStream(stream, repair), repair);
            // Hundredths of a second; without the limits of the reader it takes longer in every build.
            EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4));
        }
        EXPECT_EQ(model.getResults(), someResults());
    }
}

TEST(OvercurrentModelArchiveTest, RepairSaysWhatWasLost)
{
    const std::string results = "The results could not be read.";
    const std::string plan = "The plan could not be read; the default one is used.";
    const std::string planOfTest = "The plan could not be read; that of the test is used.";
    const std::string origin = "Which device made the results, and when, could not be read.";
    auto untested = someArchive();
    untested.results.reset();
    OvercurrentModel model;
    std::string said;
    model.signalMessage.connect([&](const std::string& text) { said += text; });
    const auto repair = [&](auto entries, const std::string& prefix) {
        auto stream = packed(entries, prefix);
        said.clear();
        EXPECT_TRUE(model.setDataStream(stream, true));
        EXPECT_EQ(model.areResultsLost(), said.starts_with(results));
        return said;
    };
    auto entries = entriesOf(someArchive());
    EXPECT_EQ(repair(entries, ArchiveHelper::PREFIX), "");
    entries["plan.xml"] = "<broken";
    EXPECT_EQ(repair(entries, ArchiveHelper::PREFIX), planOfTest);
    EXPECT_EQ(model.getPlan(), someResults().plan);
    entries["info.xml"] = "<broken";
    EXPECT_EQ(repair(entries, ArchiveHelper::PREFIX), origin + "\n" + planOfTest);
    EXPECT_THAT(model.getState(), testing::HasSubstr("ORIGIN UNKNOWN"));
    entries["test-results.xml"] = "<broken";
    EXPECT_EQ(repair(entries, ArchiveHelper::PREFIX), results + "\n" + plan);
    EXPECT_EQ(TestOutcome::create(nullptr, true).text, "The results of this file could not be read.");
    entries = entriesOf(untested);
    entries["info.xml"] = "<broken";
    EXPECT_EQ(repair(entries, ArchiveHelper::PREFIX), "");
    entries["settings.xml"] = "<broken";
    EXPECT_EQ(repair(entries, ArchiveHelper::PREFIX),
              "The settings could not be read; the default ones are used.");
    entries = entriesOf(untested);
    replace(entries.at("settings.xml"), "<value id=\"settingCurrent\">0.9</value>", "");
    EXPECT_EQ(repair(entries, ArchiveHelper::PREFIX),
              "Some settings are missing in the file; check them all.");
    entries = entriesOf(untested);
    entries.erase("info.xml");
    entries.erase("test-results.xml");
    entries["results.xml"] = "<results end=\"complete\"><point/></results>";
    EXPECT_EQ(repair(entries, ArchiveHelper::OUTDATED_PREFIX), results);
    model.newData("");
    EXPECT_FALSE(model.areResultsLost());
}

namespace {

std::ifstream fileOf(const char* name)
{
    return std::ifstream(std::filesystem::path(__FILE__).parent_path() / name, std::ios::binary);
}

} // namespace

TEST(OvercurrentModelArchiveTest, ConvertsTheOlderFormInRepairModeOnly)
{
    OvercurrentModel model;
    model.signalMessage.connect([](const std::string& text) { ADD_FAILURE() << text; });
    auto refused = fileOf("outdated.kovc");
    EXPECT_FALSE(model.setDataStream(refused, false));
    auto accepted = fileOf("outdated.kovc");
    ASSERT_TRUE(model.setDataStream(accepted, true));
    EXPECT_EQ(model.getSettings()[StageId::First].settingCurrent, 1.25);
    EXPECT_EQ(model.getPlan().multiples, (std::vector<double>{2, 4, 8}));
    EXPECT_FALSE(model.getResults());
    // Saved again it is an archive of the present form.
}

TEST(OvercurrentModelArchiveTest, OpensTheFormerFormsAsTheyAre)
{
    for (const auto& [name, repair] : {std::pair("former.kovc", false),
                                       {"former.kovc", true},
                                       {"third.kovc", false},
                                       {"third.kovc", true},
                                       {"sealed.kovc", false},
                                       {"sealed.kovc", true}}) {
        SCOPED_TRACE(name);
        OvercurrentModel model;
        model.signalMessage.connect([](const std::string& text) { ADD_FAILURE() << text; });
        auto file = fileOf(name);
        ASSERT_TRUE(model.setDataStream(file, repair));
        EXPECT_EQ(model.getSettings(), RelaySettings());
        EXPECT_EQ(model.getPlan(), TestPlan());
        const auto results = model.getResults();
        ASSERT_TRUE(results);
        EXPECT_FALSE(model.isResultStale());
        // The checksum is that of the text of its form.
        EXPECT_EQ(results->foreignChecksum.has_value(), std::string(name) != "sealed.kovc");
        EXPECT_FALSE(results->isChangedByHand());
        EXPECT_EQ(results->points.size(), 8u);
        EXPECT_NEAR(results->pickUp->multiple - results->pickUp->without, 0.01, 1e-9);
        EXPECT_EQ(Evaluation::verdict(*results), KesMeasure::Verdict::Passed);
        const auto again = OvercurrentArchive::read(*model.getDataStream());
        ASSERT_TRUE(again);
        EXPECT_EQ(again->results, results);
        auto plan = model.getPlan();
        plan.pause += 1.0;
        ASSERT_TRUE(model.setPlan(plan));
        EXPECT_TRUE(model.isResultStale()) << "of another plan, although of the same settings";
    }
}

/// One that holds other values than the defaults, and damaged ones.
TEST(OvercurrentModelArchiveTest, TheOnlyStageOfTheThirdFormBecomesTheFirstOne)
{
    ArchiveHelper::DataMap data;
    auto file = fileOf("third.kovc");
    ASSERT_TRUE(ArchiveHelper::unpackStreamToData(file, data, ArchiveHelper::PREFIX));
    std::map<std::string, std::string> entries;
    for (const auto& [name, stream] : data)
        entries[name] = textOf(*stream);
    replace(entries.at("settings.xml"), "<value id=\"settingCurrent\">1<",
            "<value id=\"settingCurrent\">0.25<");
    replace(entries.at("settings.xml"), "<value id=\"nominalCurrent\">1<",
            "<value id=\"nominalCurrent\">0.1<");
    replace(entries.at("settings.xml"), "<value id=\"startInput\">2<", "<value id=\"startInput\">5<");
    OvercurrentModel model;
    auto stream = packed(entries, ArchiveHelper::PREFIX);
    ASSERT_TRUE(model.setDataStream(stream, false));
    RelaySettings expected;
    expected.nominalCurrent = 0.1;
    expected[StageId::First].settingCurrent = 0.25;
    expected.startInput = 5;
    EXPECT_EQ(model.getSettings(), expected);
    EXPECT_TRUE(model.isResultStale());
    replace(entries.at("settings.xml"), "<value id=\"startInput\">5</value>", "");
    auto damaged = packed(entries, ArchiveHelper::PREFIX);
    EXPECT_FALSE(model.setDataStream(damaged, false));
    std::string said;
    model.signalMessage.connect([&](const std::string& text) { said += text; });
    auto repaired = packed(entries, ArchiveHelper::PREFIX);
    EXPECT_TRUE(model.setDataStream(repaired, true));
    EXPECT_EQ(said, "Some settings are missing in the file; check them all.");
    EXPECT_EQ(model.getSettings()[StageId::First].settingCurrent, 0.25);
}

TEST(OvercurrentArchiveTest, AFormerPlanWithoutRoomForATolerableCurrentKeepsItsResults)
{
    auto entries =
        entriesOf(*OvercurrentArchive::read(*std::make_unique<std::ifstream>(fileOf("former.kovc"))));
    const auto former = [&](const std::string& name) {
        ArchiveHelper::DataMap data;
        auto file = fileOf("former.kovc");
        EXPECT_TRUE(ArchiveHelper::unpackStreamToData(file, data, ArchiveHelper::PREFIX));
        return textOf(*data.at(name));
    };
    for (auto& [name, text] : entries)
        text = former(name);
    replace(entries.at("test-results.xml"), "timeout=\"60\"", "timeout=\"18.1\"");
    auto stream = packed(entries, ArchiveHelper::PREFIX);
    const auto read = OvercurrentArchive::read(stream);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->results->settings.currentTolerancePercent, 0.0);
}

TEST(OvercurrentModelArchiveTest, LoadsAllOrNothing)
{
    OvercurrentModel model;
    ASSERT_TRUE(model.getTestObject()->find(Nodes::SettingCurrent)->setValue(0.7));
    auto entries = entriesOf(someArchive());
    replace(entries.at("settings.xml"), ">0.9<", ">-5<");
    auto stream = packed(entries, ArchiveHelper::PREFIX);
    const std::string before = textOf(*model.getDataStream());
    EXPECT_FALSE(model.setDataStream(stream, false));
    EXPECT_EQ(textOf(*model.getDataStream()), before);
    for (const auto& name : {"settings.xml", "plan.xml", "test-results.xml"})
        entries[name] = "<broken";
    auto intactInfo = packed(entries, ArchiveHelper::PREFIX);
    EXPECT_FALSE(model.setDataStream(intactInfo, true));
    std::stringstream nothing("anything else");
    EXPECT_FALSE(model.setDataStream(nothing, true));
    EXPECT_EQ(textOf(*model.getDataStream()), before);
}

TEST(OvercurrentModelArchiveTest, ResultsOfOtherSettingsAreNotTakenForThoseOfTheFile)
{
    OvercurrentModel model;
    auto archive = someArchive();
    ASSERT_TRUE(model.setDataStream(*archive.pack(), false));
    EXPECT_EQ(model.getResults()->settings[StageId::First].settingCurrent, 0.75);
    EXPECT_TRUE(model.isResultStale());
    archive.results->settings = model.getSettings();
    archive.results->plan.multiples = {2.0, 3.1, 6.0};
    EXPECT_FALSE(OvercurrentArchive::read(*archive.pack())) << "points of another plan";
}
