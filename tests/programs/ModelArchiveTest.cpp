#include "Archives.h"

#include <Overcurrent/data/TestOutcome.h>
#include <Overcurrent/model/OvercurrentModel.h>

#include <KesProgram/archive/ArchiveHelper.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>

using namespace Overcurrent;
using namespace OvercurrentArchives;
namespace ArchiveHelper = KesProgram::ArchiveHelper;
namespace Nodes = KesTree::RelayNodes;

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
