#include <VoltageFrequency/model/VoltageFrequencyModel.h>

#include <KesCommonView/UnattendedDialogs.h>
#include <KesProgram/archive/ArchiveManager.h>
#include <KesTestProgram/TestPresenter.h>

#include <support/ProgramRunTest.h>

using namespace VoltageFrequency;
using KesMeasure::MeasureState;
using KesMeasure::RunEnd;
using KesTestProgram::RunKind;
using testing::HasSubstr;

namespace {

using Results = KesTestProgram::RecordedTest;

class RepeatTest : public KesTest::ProgramRunTest<KesTest::EditedModel<VoltageFrequencyModel>> {
protected:
    RepeatTest() : ProgramRunTest(1e5) {}

    bool repeat(const std::vector<std::size_t>& rows)
    {
        return runToEnd([&] { return model.repeatTest(rows); });
    }
    KesMeasure::TestRecord getRecord() { return *model.getTestInView().record; }
    /// Six results are left, the first of them far away.
    void breakTest()
    {
        model.edit([](Results& results) {
            results.readings.resize(6);
            results.readings[0].value += 1000.0;
            results.end = RunEnd::Fault;
        });
    }
};

} // namespace

TEST_F(RepeatTest, SelectedRowsAreMeasuredAgainAndTheOthersStay)
{
    EXPECT_THAT(model.whyNotRepeat(), HasSubstr("no results"));
    EXPECT_FALSE(model.repeatTest({0}));
    ASSERT_TRUE(runToEnd());
    const auto whole = getRecord();
    EXPECT_EQ(model.whyNotRepeat(), "");
    EXPECT_THAT(model.whyNotContinue(), HasSubstr("Everything"));
    model.edit([](Results& results) {
        results.readings[3] = {MeasureState::NoOperation, 0.0};
        results.readings[5].value += 1000.0;
    });
    ASSERT_TRUE(repeat({3, 99}));
    auto record = getRecord();
    EXPECT_EQ(record.readings[3], whole.readings[3]);
    EXPECT_GT(record.readings[5].value, 1000.0);
    EXPECT_EQ(record.end, RunEnd::Complete);
    EXPECT_EQ(model.getRunVerdict(), KesProgram::RunVerdict::Failed);
    EXPECT_EQ(record.startedAt, whole.startedAt);
    EXPECT_NE(record.continuedAt, "");
    ASSERT_TRUE(repeat({5}));
    EXPECT_EQ(getRecord().readings, whole.readings);
    EXPECT_EQ(model.getRunVerdict(), KesProgram::RunVerdict::Passed);
    // The next start is a new test.
    ASSERT_TRUE(runToEnd());
    EXPECT_EQ(getRecord().continuedAt, "");
    // A fault in between is told, though all rows are there.
    model.setSpeed(1.0);
    ASSERT_TRUE(model.repeatTest({5}));
    ASSERT_TRUE(KesTest::waitFor([this] { return model.isRunning(); }));
    getDevice()->setNonsense(true);
    EXPECT_TRUE(waitForEnd());
    getDevice()->setNonsense(false);
    EXPECT_EQ(model.getRunVerdict(), KesProgram::RunVerdict::Fault);
}

TEST_F(RepeatTest, AStoppedTestGoesOnWhereItEnded)
{
    ASSERT_TRUE(runToEnd());
    const auto whole = getRecord();
    breakTest();
    EXPECT_FALSE(model.repeatTest({6})) << "it is not measured yet";
    ASSERT_TRUE(repeat({0}));
    EXPECT_EQ(getRecord().readings.size(), 6u);
    EXPECT_EQ(getRecord().end, RunEnd::Stopped) << "the rest is still missing";
    EXPECT_EQ(getRecord().readings[0], whole.readings[0]);
    breakTest();
    ASSERT_TRUE(runToEnd([this] { return model.continueTest(); }));
    auto record = getRecord();
    EXPECT_EQ(record.end, RunEnd::Complete);
    EXPECT_GT(record.readings[0].value, 1000.0) << "what is measured stays";
    record.readings[0] = whole.readings[0];
    EXPECT_EQ(record.readings, whole.readings);
    // Start asks what is meant.
    int asked = 0;
    std::optional<RunKind> answer;
    model.chooseStart = [&] { return ++asked, answer; };
    int confirmed = 0;
    model.confirmReplacing = [&confirmed] { return ++confirmed > 0; };
    breakTest();
    EXPECT_FALSE(model.startTest());
    EXPECT_EQ(getRecord().readings.size(), 6u);
    answer = RunKind::Rest;
    ASSERT_TRUE(runToEnd());
    EXPECT_GT(getRecord().readings[0].value, 1000.0);
    breakTest();
    answer = RunKind::Anew;
    ASSERT_TRUE(runToEnd());
    EXPECT_EQ(getRecord().readings, whole.readings);
    EXPECT_EQ(asked, 3);
    EXPECT_EQ(confirmed, 1) << "what is in no file is not lost by a mistaken answer";
}

TEST_F(RepeatTest, NothingIsAddedToResultsOfOtherCircumstances)
{
    ASSERT_TRUE(runToEnd());
    const auto whole = getRecord();
    auto& setting = *model.getTestObject()->find("undervoltage/setting");
    const double before = setting.getNumber();
    ASSERT_TRUE(setting.setValue(75.0));
    EXPECT_THAT(model.whyNotRepeat(), HasSubstr("changed since"));
    EXPECT_FALSE(model.repeatTest({0}));
    ASSERT_TRUE(setting.setValue(before));
    model.setPlanError("a field that is no number");
    EXPECT_THAT(model.whyNotRepeat(), HasSubstr("changed since"));
    model.setPlanError("");
    using KesMeasure::TestCircumstances;
    for (const auto text : {&TestCircumstances::device, &TestCircumstances::serialNumber,
                            &TestCircumstances::firmwareVersion, &TestCircumstances::calibrationDate}) {
        model.edit([&](Results& results) {
            static_cast<TestCircumstances&>(results) = whole;
            results.*text = "another";
        });
        ASSERT_TRUE(repeat({0}));
        EXPECT_THAT(takeTexts(), HasSubstr("another device"));
    }
    EXPECT_EQ(getRecord().continuedAt, "");
    EXPECT_EQ(getRecord().readings, whole.readings);
    model.edit([](Results& results) { results.origin = KesMeasure::Origin::Unknown; });
    EXPECT_THAT(model.whyNotRepeat(), HasSubstr("not known"));
}

TEST_F(RepeatTest, EachValueIsMeasuredSeveralTimesAndTheWorstCounts)
{
    ASSERT_TRUE(model.getTestObject()->find("plan/repetitions")->setValue(3LL));
    ASSERT_TRUE(runToEnd());
    for (const auto& reading : getRecord().readings) {
        ASSERT_EQ(reading.singles.size(), 3u);
        EXPECT_NEAR(reading.value, (reading.singles[0] + reading.singles[1] + reading.singles[2]) / 3.0,
                    1e-9);
    }
    EXPECT_EQ(model.getRunVerdict(), KesProgram::RunVerdict::Passed);
    const auto plan = model.createTest()->createPlan();
    // A mean within the band, of values outside on both sides.
    model.edit([&](Results& results) {
        const double half = plan[2].upper - plan[2].lower;
        const double middle = plan[2].expected;
        results.readings[2] =
            KesMeasure::Reading::ofSingles({middle - half, middle, middle + half}, {MeasureState::Measured});
        results.readings[4] = KesMeasure::Reading::ofSingles({plan[4].expected}, {MeasureState::NoOperation});
    });
    const auto table = model.getShownTest().table;
    EXPECT_EQ(table.columns[5].title, "Mean");
    EXPECT_EQ(table.columns[6].name, "spread");
    EXPECT_EQ(table.rows[2].mark, KesMeasure::Mark::Failed);
    EXPECT_NEAR(std::stod(table.rows[2].cells[6]), 2.0 * (plan[2].upper - plan[2].lower), 1e-2);
    EXPECT_EQ(table.rows[4].cells[6], "");
    EXPECT_EQ(table.rows[5].mark, KesMeasure::Mark::Passed);
    // The archive keeps the single values.
    const auto record = getRecord();
    const auto stream = model.getDataStream();
    model.newData("");
    ASSERT_TRUE(model.setDataStream(*stream, false));
    EXPECT_EQ(getRecord(), record);
}

TEST_F(RepeatTest, WithoutAUserAStartIsANewTestAndLosesNothing)
{
    KesTestProgram::TestPresenter presenter(model);
    ASSERT_TRUE(runToEnd());
    breakTest();
    auto scripted = Kes::DialogBackend::install(std::make_unique<Kes::UnattendedDialogs>());
    EXPECT_FALSE(model.startTest()) << "they are in no file";
    ASSERT_TRUE(model.getArchiveManager()->saveAs(home.file("a.kvf")));
    EXPECT_TRUE(runToEnd());
    EXPECT_EQ(getRecord().continuedAt, "");
    Kes::DialogBackend::install(std::move(scripted));
    // With one, all three answers are on offer.
    breakTest();
    dialogs.answer(Kes::DialogResult::Cancel);
    EXPECT_FALSE(model.startTest());
    dialogs.answer(Kes::DialogResult::Yes);
    EXPECT_TRUE(runToEnd());
    EXPECT_NE(getRecord().continuedAt, "");
    breakTest();
    dialogs.answer(Kes::DialogResult::No);
    dialogs.answer(Kes::DialogResult::Yes);
    EXPECT_TRUE(runToEnd());
    EXPECT_EQ(getRecord().continuedAt, "");
    EXPECT_THAT(dialogs.getTexts().back(), HasSubstr("have not been saved"));
}
