#include <Overcurrent/data/DataSummary.h>
#include <Overcurrent/data/OvercurrentArchive.h>
#include <Overcurrent/model/OvercurrentModel.h>
#include <Overcurrent/presenter/OvercurrentPresenter.h>

#include <KesCommon/Directories.h>
#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/recovery/RecoveryStore.h>

#include <support/GuiTest.h>
#include <support/LanguageScope.h>
#include <support/TemporaryHome.h>

#include <chrono>
#include <filesystem>
#include <sstream>

using namespace Overcurrent;
using testing::HasSubstr;

namespace {

class UnsavedWorkTest : public KesTest::GuiTest {
protected:
    ~UnsavedWorkTest() override
    {
        model.stopTest();
        EXPECT_TRUE(KesTest::waitFor([this] { return model.getCanStart(); }));
    }

    KesTest::TemporaryHome home;
    OvercurrentModel model;
};

TEST_F(UnsavedWorkTest, WhatARunHasMeasuredIsCopiedWhileItRuns)
{
    OvercurrentPresenter shell(model);
    shell.open(nullptr);
    model.setSpeed(50);
    ASSERT_TRUE(model.startTest());
    const std::string folder = Kes::getKesCrossAppStateDir() + "OvercurrentModel/recovery/";
    const auto isCopied = [&] {
        const auto results = model.getResults();
        return results && results->points.size() >= 2 && shell.writeRecoveryCopy(std::chrono::seconds(5));
    };
    ASSERT_TRUE(KesTest::waitFor(isCopied));
    ASSERT_TRUE(model.isRunning());
    std::filesystem::copy(folder, home.file("copies/"));
    auto lost = KesProgram::RecoveryStore(home.file("copies/")).findLost();
    ASSERT_EQ(lost.size(), 1U);
    const auto& copy = lost.front().getCopy();
    EXPECT_THAT(copy.holds, testing::MatchesRegex("[2-9] results of 20..-..-.. ..:.., not saved"));
    std::istringstream stream(copy.bytes);
    OvercurrentModel other;
    EXPECT_TRUE(other.setDataStream(stream, false));
    EXPECT_GE(other.getResults()->points.size(), 2U);
    model.close();
    bool isClosed = false;
    shell.signalClosed.connect([&] { isClosed = true; });
    EXPECT_TRUE(KesTest::waitFor([&] { return isClosed; }));
}

TEST(DataSummary, CountsInTheFormsOfBothLanguages)
{
    EXPECT_EQ(DataSummary::text({}), "settings and plan");
    TestResults results;
    results.startedAt = "2026-11-20 14:05:09";
    EXPECT_EQ(DataSummary::text(results), "settings and plan");
    results.pickUp.emplace();
    EXPECT_EQ(DataSummary::text(results), "1 result of 2026-11-20 14:05");
    results.points.resize(2);
    EXPECT_EQ(DataSummary::text(results), "3 results of 2026-11-20 14:05");
    const KesTest::LanguageScope russian(lng::Russian);
    EXPECT_EQ(DataSummary::text(results), "3 результата от 2026-11-20 14:05");
}

} // namespace
