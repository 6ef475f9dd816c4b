#include <VoltageFrequency/model/VoltageFrequencyModel.h>

#include <KesCommon/DesktopOpener.h>
#include <KesCommon/FileSystem.h>
#include <KesMeasure/TestEvaluation.h>
#include <KesTestProgram/TestPresenter.h>

#include <support/ProgramRunTest.h>

#include <gtkmm/treeview.h>

#include <filesystem>

using namespace VoltageFrequency;
using KesMeasure::Origin;
using KesMeasure::RunEnd;
using KesProgram::RunVerdict;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class ModelTest : public KesTest::ProgramRunTest<VoltageFrequencyModel> {
protected:
    ModelTest() : ProgramRunTest(1e5) {}
};

} // namespace

TEST_F(ModelTest, MeasuresTheSameAtAnySpeed)
{
    ASSERT_TRUE(runToEnd());
    EXPECT_THAT(takeTexts(), IsEmpty());
    EXPECT_EQ(model.getRunVerdict(), RunVerdict::Passed);
    auto fast = *model.getTestInView().record;
    EXPECT_EQ(fast.readings.size(), 15u);
    EXPECT_EQ(fast.origin, Origin::Simulated);
    EXPECT_EQ(fast.end, RunEnd::Complete);
    EXPECT_EQ(model.getProgress(), 1.0);
    model.announceOutcome();
    EXPECT_THAT(model.getState(), HasSubstr("SIMULATED DEVICE"));
    EXPECT_THAT(model.getDataSummary(), testing::StartsWith("15 results of 2"));
    model.setSpeed(300);
    ASSERT_TRUE(runToEnd());
    auto slow = *model.getTestInView().record;
    slow.startedAt = fast.startedAt;
    EXPECT_EQ(slow, fast);
}

TEST_F(ModelTest, RefusesWhatCannotBeTested)
{
    ASSERT_TRUE(model.getTestObject()->find("relay/startInput")->setValue(1LL));
    EXPECT_FALSE(model.startTest());
    EXPECT_THAT(takeTexts(), HasSubstr("need an input each"));
    ASSERT_TRUE(model.getTestObject()->find("relay/startInput")->setValue(2LL));
    // 550 V are more than the device's three phases give.
    ASSERT_TRUE(model.getTestObject()->find("overvoltage/setting")->setValue(500.0));
    ASSERT_TRUE(model.getTestObject()->find("plan/voltageStep")->setValue(50.0));
    EXPECT_TRUE(runToEnd());
    EXPECT_THAT(takeTexts(), HasSubstr("The test cannot be started"));
    EXPECT_FALSE(model.getTestInView().record);
}

TEST_F(ModelTest, AStoppedTestKeepsWhatItHasAndNothingIsLostUnasked)
{
    model.setSpeed(50);
    ASSERT_TRUE(model.startTest());
    const auto hasReading = [this] {
        const auto record = model.getTestInView().record;
        return record && !record->readings.empty();
    };
    ASSERT_TRUE(KesTest::waitFor(hasReading));
    model.stopTest();
    ASSERT_TRUE(KesTest::waitFor([this] { return model.getCanStart(); }));
    EXPECT_EQ(model.getRunVerdict(), RunVerdict::Stopped);
    const auto record = model.getTestInView().record;
    EXPECT_EQ(record->end, RunEnd::Stopped);
    EXPECT_LT(record->readings.size(), 14u);
    int asked = 0;
    model.confirmReplacing = [&asked] { return ++asked < 0; };
    EXPECT_FALSE(model.startTest());
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(model.getTestInView().record, record);
}

TEST_F(ModelTest, TheReportSaysWhatTheWindowDoes)
{
    ASSERT_TRUE(runToEnd());
    const std::string path = home.file("report.html");
    ASSERT_TRUE(model.writeReport(path));
    const std::string report = Kes::readWholeFile(path);
    EXPECT_THAT(report, HasSubstr("SIMULATED DEVICE"));
    EXPECT_THAT(report, HasSubstr("Test passed: 15 of 15 values within tolerance"));
    const auto shown = model.getTestInView();
    for (const auto& row :
         KesMeasure::TestEvaluation::createTable(shown.test->createPlan(), shown.getRecord()).rows)
        EXPECT_THAT(report, HasSubstr("<td>" + row.cells[5] + "</td>"));
}

TEST_F(ModelTest, TheUserChoosesTheReportAndNoneIsOverwritten)
{
    VoltageFrequencyModel shown;
    KesTestProgram::TestPresenter presenter(shown);
    bool isClosed = false;
    presenter.signalClosed.connect([&isClosed] { isClosed = true; });
    presenter.open(nullptr);
    std::vector<std::string> opened;
    auto previous = Kes::DesktopOpener::replace([&opened](const std::string& path) {
        opened.push_back(path);
        return Kes::Result(true);
    });
    for (const char* name : {"one.html", "two.pdf"}) {
        dialogs.answerFile(home.file(name));
        presenter.requestReport();
    }
    EXPECT_THAT(opened, testing::ElementsAre(home.file("one.html"), home.file("two.pdf")));
    EXPECT_THAT(KesTest::readFile(home.file("two.pdf")), testing::StartsWith("%PDF-"));
    std::filesystem::path offered = dialogs.getFiles().back().suggestion;
    KesTest::writeFile(offered, "former");
    offered.replace_extension();
    KesTest::writeFile(offered.string() + "-2.pdf", "former");
    dialogs.answerFile("");
    presenter.requestReport();
    EXPECT_EQ(dialogs.getFiles().back().suggestion, offered.string() + "-3.html");
    EXPECT_EQ(opened.size(), 2u) << "cancelled";
    dialogs.answerFile("/dev/full");
    dialogs.answer(Kes::DialogResult::Ok);
    presenter.requestReport();
    EXPECT_EQ(opened.size(), 2u);
    Kes::DesktopOpener::replace(std::move(previous));
    dialogs.answer(Kes::DialogResult::No);
    presenter.requestClose();
    EXPECT_TRUE(KesTest::waitFor([&isClosed] { return isClosed; }));
}

TEST_F(ModelTest, TheWindowShowsThePlanAndFillsIt)
{
    VoltageFrequencyModel shown;
    KesTestProgram::TestPresenter presenter(shown);
    shown.setSpeed(1e5);
    bool isClosed = false;
    presenter.signalClosed.connect([&isClosed] { isClosed = true; });
    presenter.open(nullptr);
    auto& window = dynamic_cast<Gtk::Widget&>(*presenter.getView());
    const auto tables = [&] { return KesTest::findWidgets<Gtk::TreeView>(window); };
    ASSERT_TRUE(KesTest::waitFor([&] { return !tables().empty(); }));
    const auto cell = [&](int row, int column) {
        Glib::ustring text;
        tables().front()->get_model()->children()[static_cast<unsigned>(row)].get_value(column, text);
        return text.raw();
    };
    EXPECT_EQ(tables().front()->get_model()->children().size(), 15u);
    EXPECT_EQ(cell(14, 1), "81R df/dt");
    EXPECT_EQ(cell(14, 8), "Planned");
    ASSERT_TRUE(shown.startTest());
    EXPECT_TRUE(KesTest::waitFor(
        [&] { return shown.getCanStart() && cell(14, 8).find("Passed") != std::string::npos; }));
    ASSERT_TRUE(shown.getTestObject()->find("frequencyRate/used")->setValue(false));
    EXPECT_EQ(tables().front()->get_model()->children().size(), 15u) << "results stay";
    dialogs.answer(Kes::DialogResult::No);
    presenter.requestClose();
    EXPECT_TRUE(KesTest::waitFor([&isClosed] { return isClosed; }));
}

TEST_F(ModelTest, AFaultOfTheDeviceEndsTheRunAndKeepsWhatIsMeasured)
{
    model.setSpeed(50);
    ASSERT_TRUE(model.startTest());
    ASSERT_TRUE(KesTest::waitFor([this] {
        const auto record = model.getTestInView().record;
        return record && !record->readings.empty();
    }));
    getDevice()->simulateQuickShutdown();
    EXPECT_TRUE(KesTest::waitFor([this] { return model.getCanStart(); }));
    EXPECT_EQ(model.getRunVerdict(), RunVerdict::Fault);
    EXPECT_THAT(takeTexts(), testing::Not(IsEmpty()));
    EXPECT_EQ(model.getTestInView().record->end, RunEnd::Fault);
    getDevice()->clearFaults();
}
