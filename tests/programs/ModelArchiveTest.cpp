#include "SomeArchive.h"

#include <Overcurrent/data/Evaluation.h>
#include <Overcurrent/data/TestOutcome.h>

#include <KesTreeRelay/Nameplate.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

using namespace Overcurrent;
using namespace KesTest;
using KesProgram::ArchiveHelper::OUTDATED_PREFIX;
using KesProgram::ArchiveHelper::PREFIX;
namespace Nodes = KesTree::RelayNodes;

namespace {

/// An archive of a former form.
std::ifstream fileOf(const char* name)
{
    return std::ifstream(std::filesystem::path(__FILE__).parent_path() / name, std::ios::binary);
}

/// A model whose texts are kept.
class OvercurrentModelArchiveTest : public testing::Test {
protected:
    OvercurrentModelArchiveTest()
    {
        model.signalMessage.connect([this](const std::string& text) { said += text + "\n"; });
    }

    bool open(const std::string& bytes, bool isRepair)
    {
        std::stringstream stream(bytes);
        said.clear();
        return model.setDataStream(stream, isRepair);
    }
    bool open(const Entries& entries, bool isRepair) { return open(packed(entries).str(), isRepair); }

    OvercurrentModel model;
    std::string said;
};

} // namespace

TEST_F(OvercurrentModelArchiveTest, AChangedByteCostsOnePartAtMostAndThatIsNamed)
{
    const std::string whole = textOf(*someArchive().pack());
    const auto end = whole.rfind("PK\5\6") + 22;
    for (std::size_t at = 0; at < end; at += at < 100 ? 1 : 3) {
        auto damaged = whole;
        damaged[at] = static_cast<char>(damaged[at] ^ (at < 100 ? 0x01 : 0x55));
        ASSERT_TRUE(open(damaged, true)) << at;
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
    auto damaged = whole;
    for (std::size_t at = 0; at < 4; ++at) {
        damaged[at] = '?';
        EXPECT_EQ(open(damaged, true), at < 3) << at + 1 << " bytes of the signature";
    }
}

TEST_F(OvercurrentModelArchiveTest, RepairSaysWhatWasLost)
{
    const std::string results = "The results could not be read.\n";
    const std::string plan = "The plan could not be read; the default one is used.\n";
    const std::string planOfTest = "The plan could not be read; that of the test is used.\n";
    const std::string origin = "Which device made the results, and when, could not be read.\n";
    const std::string settings = "The settings could not be read; the default ones are used.\n";
    const std::string someSettings = "Some settings are missing in the file; check them all.\n";
    const auto repair = [&](const Entries& entries, const std::string& prefix = PREFIX) {
        EXPECT_TRUE(open(packed(entries, prefix).str(), true));
        EXPECT_EQ(model.areResultsLost(), said.starts_with(results));
        return said;
    };
    auto entries = someEntries();
    EXPECT_EQ(repair(entries), "");
    entries["plan.xml"] = "<broken";
    EXPECT_EQ(repair(entries), planOfTest);
    EXPECT_EQ(model.getPlan(), someResults().plan);
    EXPECT_EQ(model.getResults(), someResults());
    entries["info.xml"] = "<broken";
    EXPECT_EQ(repair(entries), origin + planOfTest);
    EXPECT_THAT(model.getState(), testing::HasSubstr("ORIGIN UNKNOWN"));
    ASSERT_TRUE(open(textOf(*model.getDataStream()), false));
    EXPECT_EQ(model.getResults()->origin, Origin::Unknown) << "then and after saving";
    entries["test-results.xml"] = "<broken";
    EXPECT_EQ(repair(entries), results + plan);
    EXPECT_EQ(TestOutcome::create(nullptr, true).text, "The results of this file could not be read.");
    model.newData("");
    EXPECT_FALSE(model.areResultsLost());
    auto untested = someArchive();
    untested.results.reset();
    const auto whole = entriesOf(*untested.pack());
    entries = whole;
    replace(entries["settings.xml"], "<value id=\"settingCurrent\">0.9</value>", "");
    EXPECT_EQ(repair(entries), someSettings);
    entries = whole;
    entries["info.xml"] = "<broken";
    EXPECT_EQ(repair(entries), "");
    entries["settings.xml"] = "<broken";
    EXPECT_EQ(repair(entries), settings);
    entries = whole;
    entries.erase("info.xml");
    entries.erase("test-results.xml");
    entries["results.xml"] = "<results end=\"complete\"><point/></results>";
    EXPECT_EQ(repair(entries, OUTDATED_PREFIX), results);
}

TEST_F(OvercurrentModelArchiveTest, LoadsAllOrNothing)
{
    ASSERT_TRUE(model.getTestObject()->find(Nodes::SettingCurrent)->setValue(0.7));
    const std::string before = textOf(*model.getDataStream());
    auto entries = someEntries();
    replace(entries.at("settings.xml"), ">0.9<", ">-5<");
    EXPECT_FALSE(open(entries, false));
    for (const auto& name : {"settings.xml", "plan.xml", "test-results.xml"})
        entries[name] = "<broken";
    EXPECT_FALSE(open(entries, true));
    EXPECT_FALSE(open("anything else", true));
    EXPECT_EQ(textOf(*model.getDataStream()), before);
}

TEST_F(OvercurrentModelArchiveTest, ResultsOfOtherSettingsAreNotTakenForThoseOfTheFile)
{
    ASSERT_TRUE(open(someEntries(), false));
    EXPECT_EQ(model.getResults()->settings[StageId::First].settingCurrent, 0.75);
    EXPECT_TRUE(model.isResultStale());
    EXPECT_FALSE(model.isUntouched());
    model.newData("");
    EXPECT_TRUE(model.isUntouched()) << "settings, plan and results are new";
}

TEST_F(OvercurrentModelArchiveTest, ConvertsTheOldestFormInRepairModeOnly)
{
    auto file = fileOf("outdated.kovc");
    const auto outdated = textOf(file);
    EXPECT_FALSE(open(outdated, false));
    ASSERT_TRUE(open(outdated, true));
    EXPECT_EQ(said, "");
    EXPECT_EQ(model.getSettings()[StageId::First].settingCurrent, 1.25);
    EXPECT_EQ(model.getPlan().multiples, (std::vector<double>{2, 4, 8}));
    EXPECT_FALSE(model.getResults());
}

TEST_F(OvercurrentModelArchiveTest, OpensTheFormerFormsAsTheyAre)
{
    auto& comment = *model.getTestObject()->find(KesTree::Nameplate::Comment);
    for (const std::string name : {"former.kovc", "third.kovc", "sealed.kovc"})
        for (const bool isRepair : {false, true}) {
            SCOPED_TRACE(name);
            ASSERT_TRUE(comment.setText("of another file"));
            auto file = fileOf(name.c_str());
            ASSERT_TRUE(open(textOf(file), isRepair));
            EXPECT_EQ(said, "");
            EXPECT_EQ(comment.getText(), "");
            EXPECT_EQ(model.getSettings(), RelaySettings());
            EXPECT_EQ(model.getPlan(), TestPlan());
            const auto results = model.getResults();
            ASSERT_TRUE(results);
            EXPECT_FALSE(model.isResultStale());
            // The checksum is that of the text of its form.
            EXPECT_EQ(results->foreignChecksum.has_value(), name != "sealed.kovc");
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
TEST_F(OvercurrentModelArchiveTest, TheOnlyStageOfTheThirdFormBecomesTheFirstOne)
{
    auto file = fileOf("third.kovc");
    auto entries = entriesOf(file);
    auto& text = entries.at("settings.xml");
    replace(text, "<value id=\"settingCurrent\">1<", "<value id=\"settingCurrent\">0.25<");
    replace(text, "<value id=\"nominalCurrent\">1<", "<value id=\"nominalCurrent\">0.1<");
    replace(text, "<value id=\"startInput\">2<", "<value id=\"startInput\">5<");
    ASSERT_TRUE(open(entries, false));
    RelaySettings expected;
    expected.nominalCurrent = 0.1;
    expected[StageId::First].settingCurrent = 0.25;
    expected.startInput = 5;
    EXPECT_EQ(model.getSettings(), expected);
    EXPECT_TRUE(model.isResultStale());
    replace(text, "<value id=\"startInput\">5</value>", "");
    EXPECT_FALSE(open(entries, false));
    EXPECT_TRUE(open(entries, true));
    EXPECT_EQ(said, "Some settings are missing in the file; check them all.\n");
    EXPECT_EQ(model.getSettings()[StageId::First].settingCurrent, 0.25);
}

TEST_F(OvercurrentModelArchiveTest, AFormerPlanWithoutRoomForATolerableCurrentKeepsItsResults)
{
    auto file = fileOf("former.kovc");
    auto entries = entriesOf(file);
    replace(entries.at("test-results.xml"), "timeout=\"60\"", "timeout=\"18.1\"");
    ASSERT_TRUE(open(entries, false));
    EXPECT_EQ(model.getResults()->settings.currentTolerancePercent, 0.0);
}
