#include <VoltageFrequency/model/VoltageFrequencyModel.h>

#include <KesCommon/DesktopOpener.h>
#include <KesCommonView/UpdateView.h>
#include <KesMeasureView/WindowOpening.h>
#include <KesProgram/archive/ArchiveManager.h>
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

using WindowTest = KesTest::ProgramWindowTest<VoltageFrequencyModel, KesTestProgram::TestPresenter>;

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
    ASSERT_TRUE(KesTest::waitFor([this] {
        const auto record = model.getTestInView().record;
        return record && !record->readings.empty();
    }));
    model.stopTest();
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(model.getRunVerdict(), RunVerdict::Stopped);
    const auto record = model.getTestInView().record;
    EXPECT_EQ(record->end, RunEnd::Stopped);
    EXPECT_LT(record->readings.size(), 14u);
    int asked = 0;
    model.confirmReplacing = [&asked] { return ++asked < 0; };
    EXPECT_FALSE(model.startTest());
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(model.getTestInView().record, record);
    ASSERT_TRUE(model.getArchiveManager()->saveAs(home.file("a.kvf")));
    model.setSpeed(1e5);
    EXPECT_TRUE(runToEnd());
    EXPECT_EQ(asked, 1) << "they are in a file";
    EXPECT_FALSE(model.startTest());
    EXPECT_EQ(asked, 2) << "nor is a complete one";
}

TEST_F(WindowTest, TheUserChoosesTheReportAndNoneIsOverwritten)
{
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
    dialogs.answerFile("/dev/full");
    dialogs.answer(Kes::DialogResult::Ok);
    presenter.requestReport();
    EXPECT_EQ(opened.size(), 2u) << "cancelled, and failed";
    Kes::DesktopOpener::replace(std::move(previous));
}

TEST_F(WindowTest, ShowsThePlanAndFillsIt)
{
    model.setSpeed(1e5);
    auto& window = dynamic_cast<Gtk::Window&>(*presenter.getView());
    const auto rows = [&] {
        return KesTest::findWidgets<Gtk::TreeView>(window).front()->get_model()->children();
    };
    const auto cell = [&](unsigned row, int column) {
        Glib::ustring text;
        rows()[row].get_value(column, text);
        return text.raw();
    };
    ASSERT_TRUE(KesTest::waitFor([&] { return !KesTest::findWidgets<Gtk::TreeView>(window).empty(); }));
    EXPECT_EQ(rows().size(), 15u);
    EXPECT_EQ(cell(14, 1), "81R df/dt");
    EXPECT_EQ(cell(14, 8), "Planned");
    // The window shows the end of the progress while the run is still under way.
    const Kes::ScopedConnection late =
        model.signalProgressChanged.connect([] { Kes::waitUpdateView([] {}); });
    ASSERT_TRUE(model.startTest());
    EXPECT_TRUE(KesTest::waitFor(
        [&] { return model.getCanStart() && cell(14, 8).find("Passed") != std::string::npos; }));
    auto& progress =
        *KesTest::findWidgets<Gtk::ProgressBar>(*KesTest::findByClass(window, "outcome")).front();
    EXPECT_TRUE(KesTest::waitFor([&progress] { return !progress.get_visible(); }));
    const auto style = KesTest::findByClass(window, "outcome-text")->get_style_context();
    EXPECT_TRUE(style->has_class("mark-passed") && !style->has_class("mark-none"));
    ASSERT_TRUE(model.getTestObject()->find("frequencyRate/used")->setValue(false));
    EXPECT_EQ(rows().size(), 15u) << "results stay";
    KesMeasure::WindowOpening::setDefaultSize(*presenter.getView(), 1e3, 1e3);
    Gdk::Rectangle screen;
    window.get_display()->get_monitor(0)->get_geometry(screen);
    int width = 0, height = 0;
    window.get_default_size(width, height);
    EXPECT_TRUE(width < screen.get_width() && height < screen.get_height()) << width << " x " << height;
}
