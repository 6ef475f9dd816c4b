#include "ShellTest.h"

#include <KesProgram/shell/UnattendedRun.h>

namespace {

using namespace KesTest;
using KesProgram::RunVerdict;
using KesProgram::UnattendedRun;

/// A step of an unattended run, and what the run makes of its failure.
struct Step {
    const char* name;
    UnattendedRun::Status status;
    /// The report is written all the same.
    bool isReported;
};

class UnattendedRunTest : public ShellTest, public testing::WithParamInterface<std::tuple<Step, RunVerdict>> {
protected:
    /// The test body has nothing to wait for.
    Kes::ScopedConnection running = model.signalRunningChanged.connect([this] { model.endRun(); });
};

INSTANTIATE_TEST_SUITE_P(
    Steps, UnattendedRunTest,
    testing::Combine(testing::Values(Step{"nowhere", UnattendedRun::Success, true},
                                     Step{"newData", UnattendedRun::Failure, false},
                                     Step{"onPrepareStart", UnattendedRun::Failure, true},
                                     Step{"onPrepareHardware", UnattendedRun::NotStarted, false},
                                     Step{"onStart", UnattendedRun::Failure, true},
                                     Step{"onFinished", UnattendedRun::Failure, true},
                                     Step{"getRunVerdict", UnattendedRun::Failure, true},
                                     Step{"getDataStream", UnattendedRun::Failure, true},
                                     Step{"archive", UnattendedRun::Failure, true},
                                     Step{"report", UnattendedRun::Failure, false},
                                     Step{"fill config", UnattendedRun::Failure, true}),
                     testing::Values(RunVerdict::Passed, RunVerdict::Failed, RunVerdict::None)));

TEST_P(UnattendedRunTest, EndsWithAStatusWhateverFails)
{
    const auto& [step, verdict] = GetParam();
    KesProgram::CommandLine line;
    line.run = line.quit = true;
    // A full disk takes no archive, and saving does not tell.
    line.save = std::string(step.name) == "archive" ? "/dev/full" : home.file("kept.abc");
    line.report = home.file("kept.html");
    model.extension = "abc";
    model._setCanProgramStart(true);
    shell.open(nullptr);
    record.throwing = step.name;
    model.verdict = verdict;
    UnattendedRun run(line, model, shell, [this](const std::string& path) {
        record.failIn("report");
        writeFile(path, "report");
        return Kes::Result(true);
    });
    run.begin();
    EXPECT_TRUE(waitFor([this] { return isClosed; }));
    // Whatever has failed counts more than values out of tolerance.
    auto expected = step.status;
    if (expected == UnattendedRun::Success && verdict != RunVerdict::Passed)
        expected = verdict == RunVerdict::Failed ? UnattendedRun::OutOfTolerance : UnattendedRun::Failure;
    EXPECT_EQ(run.getStatus(), expected);
    EXPECT_EQ(std::filesystem::exists(line.report), step.isReported);
}

TEST_F(ShellTest, NothingIsPutOutForFilesThatNobodyCanWriteAndAPictureOfNothingIsAFailure)
{
    KesProgram::CommandLine results, report, picture;
    results.run = report.run = true;
    results.results = home.file("r.json");
    report.report = home.file("r.html");
    picture.screenshot = home.file("window.png");
    model.writesReports = false;
    model._setCanProgramStart(true);
    open();
    shell.getWindow().hide();
    std::atomic<bool> isStarted{false};
    const Kes::ScopedConnection running =
        model.signalRunningChanged.connect([&isStarted] { isStarted = true; });
    for (const auto& [line, status] : {std::pair(results, UnattendedRun::NotStarted),
                                       {report, UnattendedRun::NotStarted},
                                       {picture, UnattendedRun::Failure}}) {
        UnattendedRun run(line, model, shell, {});
        run.begin();
        EXPECT_TRUE(waitFor([&run] { return run.isDone(); }));
        EXPECT_EQ(run.getStatus(), status);
        EXPECT_FALSE(isStarted);
    }
    shell.getWindow().show();
}

/// As by a second signal, before the test has come to its end.
TEST_F(ShellTest, AForcedEndOfATestIsNoSuccess)
{
    KesProgram::CommandLine line;
    line.run = line.quit = true;
    model._setCanProgramStart(true);
    model.stopsLater = true;
    open();
    UnattendedRun run(line, model, shell, {});
    run.begin();
    ASSERT_TRUE(waitFor([this] { return model.isOutputStarted(); }));
    run.terminate();
    shell.closeWithoutQuestions();
    EXPECT_EQ(run.getStatus(), UnattendedRun::Stopped);
    EXPECT_EQ(UnattendedRun(line, model, shell, {}).endWithoutDisplay(), UnattendedRun::Failure)
        << "not even begun";
}

} // namespace
