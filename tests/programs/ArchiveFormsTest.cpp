// Archives of former forms, as files and rebuilt.

#include "Archives.h"

#include <Overcurrent/data/Evaluation.h>
#include <Overcurrent/model/OvercurrentModel.h>

#include <KesProgram/archive/ArchiveHelper.h>
#include <KesTreeRelay/Nameplate.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

using namespace Overcurrent;
using namespace OvercurrentArchives;
namespace ArchiveHelper = KesProgram::ArchiveHelper;

namespace {

std::ifstream fileOf(const char* name)
{
    return std::ifstream(std::filesystem::path(__FILE__).parent_path() / name, std::ios::binary);
}

} // namespace

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
    auto file = fileOf("third.kovc");
    auto entries = entriesOf(file);
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
    auto file = fileOf("former.kovc");
    auto entries = entriesOf(file);
    replace(entries.at("test-results.xml"), "timeout=\"60\"", "timeout=\"18.1\"");
    auto stream = packed(entries, ArchiveHelper::PREFIX);
    const auto read = OvercurrentArchive::read(stream);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->results->settings.currentTolerancePercent, 0.0);
}
