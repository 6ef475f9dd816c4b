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

    /// A test that is stopped, or ended by a fault, once it has measured two points.
    void breakTest()
    {
        model.setSpeed(50);
        ASSERT_TRUE(model.startTest());
        ASSERT_TRUE(KesTest::waitFor([this] {
            const auto results = model.getResults();
            return results && results->points.size() >= 2;
        }));
        model.stopTest();
        ASSERT_TRUE(KesTest::waitFor([this] { return model.getCanStart(); }));
        ASSERT_EQ(model.getResults()->end, RunEnd::Stopped);
    }

    KesTest::TemporaryHome home;
    OvercurrentModel model;
};

TEST_F(UnsavedWorkTest, StartAsksBeforeTheResultsOfAStoppedTestAreReplaced)
{
    model.init();
    int questions = 0;
    model.confirmReplacing = [&] { return ++questions > 1; };
    breakTest();
    const auto results = model.getResults();
    EXPECT_FALSE(model.startTest());
    EXPECT_EQ(questions, 1);
    EXPECT_EQ(model.getResults(), results);
    ASSERT_TRUE(model.getArchiveManager()->saveAs(home.file("a.kovc")));
    EXPECT_TRUE(model.startTest());
    EXPECT_EQ(questions, 1) << "they are in a file";
}

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

/// What the GUI thread does once a second for a long plan.
TEST_F(UnsavedWorkTest, ALookAtThePlansLargestResultsIsShort)
{
    model.init();
    OvercurrentArchive archive;
    archive.settings = model.getTestObject()->serialize();
    archive.results.emplace();
    archive.results->end = RunEnd::Stopped;
    archive.results->startedAt = "2026-11-20 14:05:09";
    archive.plan.multiples.clear();
    for (std::size_t i = 0; i < TestPlan::maximumPoints; ++i) {
        archive.plan.multiples.push_back(2.0 + 0.01 * static_cast<double>(i));
        archive.results->points.push_back(
            {{Fault::A, archive.plan.multiples.back()}, MeasureState::Measured, {}});
    }
    archive.results->plan = archive.plan;
    ASSERT_TRUE(model.setDataStream(*archive.pack(), true));
    ASSERT_EQ(model.getResults(), archive.results);
    auto shortest = std::chrono::steady_clock::duration::max();
    for (int i = 0; i < 20; ++i) {
        const auto begin = std::chrono::steady_clock::now();
        (void)model.getArchiveManager()->takeSnapshot();
        shortest = std::min(shortest, std::chrono::steady_clock::now() - begin);
    }
    const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(shortest).count();
    std::cout << TestPlan::maximumPoints << " points: " << microseconds << " us\n";
#ifdef NDEBUG
    EXPECT_LT(microseconds, 2000);
#endif
}

TEST(DataSummary, CountsInTheFormsOfBothLanguages)
{
    EXPECT_EQ(DataSummary::text({}), "settings and plan");
    TestResults results;
    results.startedAt = "2026-11-20 14:05:09";
    EXPECT_EQ(DataSummary::text(results), "settings and plan");
    const struct {
        std::size_t count;
        const char* english;
        const char* russian;
    } cases[] = {{1, "1 result of 2026-11-20 14:05", "1 результат от 2026-11-20 14:05"},
                 {3, "3 results of 2026-11-20 14:05", "3 результата от 2026-11-20 14:05"},
                 {8, "8 results of 2026-11-20 14:05", "8 результатов от 2026-11-20 14:05"},
                 {12, "12 results of 2026-11-20 14:05", "12 результатов от 2026-11-20 14:05"},
                 {21, "21 results of 2026-11-20 14:05", "21 результат от 2026-11-20 14:05"}};
    results.pickUp.emplace();
    for (const auto& test : cases) {
        results.points.resize(test.count - 1);
        EXPECT_EQ(DataSummary::text(results), test.english);
        const KesTest::LanguageScope russian(lng::Russian);
        EXPECT_EQ(DataSummary::text(results), test.russian);
    }
}

} // namespace
