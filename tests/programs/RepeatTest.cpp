#include <Overcurrent/data/Evaluation.h>
#include <Overcurrent/data/ResultTexts.h>
#include <Overcurrent/model/OvercurrentModel.h>

#include <support/ProgramRunTest.h>

using namespace Overcurrent;
using namespace std::chrono_literals;

namespace {

class RepeatTest : public KesTest::ProgramRunTest<KesTest::EditedModel<OvercurrentModel>> {
protected:
    RepeatTest() : ProgramRunTest(2e4)
    {
        TestPlan plan;
        plan.multiples = {2.0, 5.0, 10.0};
        EXPECT_TRUE(model.setPlan(plan));
    }

    bool repeat(std::size_t row)
    {
        return runToEnd([&] { return model.repeatTest({row}); });
    }
};

} // namespace

TEST_F(RepeatTest, APointIsMeasuredAgainAndTheRestOfATestWithItsRamps)
{
    ASSERT_TRUE(runToEnd());
    const auto whole = *model.getResults();
    model.edit([](TestResults& results) {
        results.points[0].time = 1s;
        results.points[1].state = MeasureState::NoOperation;
        results.dropOff->state = MeasureState::NoOperation;
    });
    ASSERT_TRUE(repeat(1));
    // Pick-up and drop-off count as rows behind the points.
    ASSERT_EQ(model.getShownTest().table.values[1].row, 4u);
    ASSERT_TRUE(repeat(4));
    auto results = *model.getResults();
    EXPECT_EQ(results.points[0].time, 1s);
    EXPECT_EQ(results.points[1].state, MeasureState::Measured);
    EXPECT_EQ(results.pickUp, whole.pickUp);
    EXPECT_EQ(results.dropOff->state, MeasureState::Measured);
    EXPECT_EQ(results.end, RunEnd::Complete);
    model.edit([](TestResults& edited) {
        edited.points.resize(2);
        edited.pickUp = edited.dropOff = std::nullopt;
        edited.end = RunEnd::Ended;
    });
    EXPECT_EQ(model.getShownTest().table.rows.size(), 3u) << "with what is still planned";
    EXPECT_EQ(model.getShownTest().chart.points.back().state, KesMeasure::ChartPoint::State::Planned);
    ASSERT_TRUE(runToEnd([this] { return model.continueTest(); }));
    results = *model.getResults();
    EXPECT_EQ(results.end, RunEnd::Complete);
    EXPECT_EQ(results.points[0].time, 1s);
    EXPECT_EQ(results.points.size(), 3u);
    EXPECT_TRUE(results.pickUp && results.dropOff);
    EXPECT_EQ(model.getRunVerdict(), KesProgram::RunVerdict::Failed);
}

TEST_F(RepeatTest, ARelayStaysWarmFromOneRunToTheNext)
{
    TestPlan plan;
    plan.multiples = {20.0};
    ASSERT_TRUE(model.setPlan(plan));
    ASSERT_TRUE(runToEnd());
    // Each repetition stores about a tenth of what the input withstands: the tenth one has to wait.
    for (int i = 0; i < 11; ++i)
        ASSERT_TRUE(repeat(0));
    ASSERT_EQ(model.getResults()->end, RunEnd::Complete);
    // Slow enough to be read.
    model.setSpeed(50);
    ASSERT_TRUE(model.repeatTest({0}));
    EXPECT_TRUE(KesTest::waitFor([this] { return model.getState().find("cooling") != std::string::npos; }));
    model.stopTest();
    ASSERT_TRUE(waitForEnd());
    // One that hardly cools would have to rest for hours.
    ASSERT_TRUE(model.getTestObject()->find(KesTree::RelayNodes::ContinuousWithstand)->setValue(0.5));
    model.setSpeed(2e4);
    ASSERT_TRUE(runToEnd());
    EXPECT_THAT(takeTexts(), testing::HasSubstr("more than it withstands"));
}

TEST_F(RepeatTest, TheWorstOfSeveralTimesCountsAndAllAreKept)
{
    auto plan = model.getPlan();
    plan.repetitions = 21;
    EXPECT_FALSE(model.setPlan(plan));
    plan.repetitions = 3;
    ASSERT_TRUE(model.setPlan(plan));
    ASSERT_TRUE(runToEnd());
    auto results = *model.getResults();
    ASSERT_EQ(results.points[2].singles.size(), 3u);
    EXPECT_TRUE(Evaluation::evaluate(results, results.points[2]).isPassed);
    const auto mean = results.points[2].time;
    results.points[2].takeSingles({mean - 1s, mean, mean + 1s});
    EXPECT_EQ(results.points[2].time, mean);
    const auto evaluated = Evaluation::evaluate(results, results.points[2]);
    EXPECT_FALSE(evaluated.isPassed);
    EXPECT_NEAR(*evaluated.spread, 2.0, 1e-9);
    const auto table = ResultTexts::createTable(results);
    EXPECT_EQ(table.columns.at(6).title, "Mean, s");
    EXPECT_THAT(table.rows[2].cells, testing::Contains("2.000")) << "the spread";
    model.edit([&](TestResults& edited) { edited.points = results.points; });
    const auto stream = model.getDataStream();
    model.newData("");
    ASSERT_TRUE(model.setDataStream(*stream, false));
    EXPECT_EQ(model.getResults()->points, results.points);
    EXPECT_EQ(model.getPlan(), plan);
}
