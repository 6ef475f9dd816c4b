#include <VoltageFrequency/model/VoltageFrequencyModel.h>

#include <KesCommon/DesktopOpener.h>
#include <KesCommon/FileSystem.h>
#include <KesDriver/simulated/SimulatedNetwork.h>
#include <KesMeasure/TestEvaluation.h>
#include <KesProgram/archive/ArchiveHelper.h>
#include <KesProgram/archive/ArchiveManager.h>
#include <KesTestProgram/TestPresenter.h>
#include <KesTreeRelay/Nameplate.h>

#include <support/GuiTest.h>
#include <support/TemporaryHome.h>

#include <gtkmm/treeview.h>

#include <atomic>
#include <iterator>
#include <map>
#include <mutex>
#include <sstream>

using namespace VoltageFrequency;
namespace ArchiveHelper = KesProgram::ArchiveHelper;
using KesMeasure::MeasureState;
using KesMeasure::Origin;
using KesMeasure::RunEnd;
using KesProgram::RunVerdict;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

std::string textOf(std::istream& stream)
{
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

using Entries = std::map<std::string, std::string>;

class ModelTest : public KesTest::GuiTest {
protected:
    ModelTest()
    {
        model.setSpeed(1e5);
        model.init();
        finished = model.signalFinished.connect([this](bool) { ++finishes; });
        messages = model.signalMessage.connect([this](const std::string& text) {
            std::lock_guard lock(mutex);
            texts += text + "\n";
        });
    }
    ~ModelTest() override
    {
        model.stopTest();
        EXPECT_TRUE(KesTest::waitFor([this] { return model.getCanStart(); }));
    }

    bool runToEnd()
    {
        finishes = 0;
        return model.startTest() && KesTest::waitFor([this] { return finishes > 0 && model.getCanStart(); });
    }
    std::string takeTexts()
    {
        std::lock_guard lock(mutex);
        return std::exchange(texts, {});
    }
    std::shared_ptr<KesDriver::SimulatedKesto> device()
    {
        const auto kestos = model.getHardware()->getKestos().getItems();
        return KesDriver::SimulatedNetwork::getEmbedded()->get(kestos.front()->getAddress());
    }
    std::string save() { return textOf(*model.getDataStream()); }
    Entries entries()
    {
        ArchiveHelper::DataMap data;
        EXPECT_TRUE(ArchiveHelper::unpackStreamToData(*model.getDataStream(), data, ArchiveHelper::PREFIX));
        Entries all;
        for (const auto& [name, stream] : data)
            all[name] = textOf(*stream);
        return all;
    }
    static std::stringstream pack(const Entries& all)
    {
        ArchiveHelper::DataMap data;
        for (const auto& [name, text] : all)
            data[name] = std::make_unique<std::stringstream>(text);
        std::stringstream stream;
        EXPECT_TRUE(ArchiveHelper::packDataToStream(stream, data, ArchiveHelper::PREFIX));
        return stream;
    }

    KesTest::TemporaryHome home;
    VoltageFrequencyModel model;
    std::atomic<int> finishes{0};
    std::mutex mutex;
    std::string texts;
    Kes::ScopedConnection finished;
    Kes::ScopedConnection messages;
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

TEST_F(ModelTest, AnArchiveComesBackAsItWas)
{
    const auto empty = save();
    ASSERT_TRUE(model.getTestObject()->find("undervoltage/setting")->setValue(75.0));
    ASSERT_TRUE(runToEnd());
    EXPECT_FALSE(model.isResultStale());
    const auto record = model.getTestInView().record;
    const auto whole = save();
    model.setPlanError("a field that is no number");
    model.newData("");
    EXPECT_TRUE(model.isUntouched());
    EXPECT_EQ(save(), empty);
    std::stringstream stream(whole);
    ASSERT_TRUE(model.setDataStream(stream, false));
    EXPECT_EQ(model.getTestInView().record, record);
    EXPECT_EQ(save(), whole);
    ASSERT_TRUE(model.getTestObject()->find("undervoltage/setting")->setValue(76.0));
    EXPECT_TRUE(model.isResultStale());
    EXPECT_EQ(model.getTestInView().test->createPlan()[0].expected, 75.0)
        << "the results keep their own settings";
}

TEST_F(ModelTest, ADamagedArchiveIsReadWholeOrNotAtAll)
{
    ASSERT_TRUE(runToEnd());
    const auto whole = save();
    const auto record = model.getTestInView().record;
    const auto meaningful = whole.find_last_not_of('\0');
    for (std::size_t at = 0; at < meaningful; at += 29) {
        auto damaged = whole;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x15);
        std::stringstream stream(damaged);
        if (model.setDataStream(stream, false)) {
            EXPECT_EQ(model.getTestInView().record, record) << at;
            EXPECT_EQ(save(), whole) << at;
        }
    }
    const struct {
        const char* entry;
        const char* what;
        const char* with;
    } cases[] = {
        {"info.xml", "kes-voltage-frequency", "kes-overcurrent"},
        {"info.xml", "format=\"1\"", "format=\"2\""},
        {"info.xml", "simulated=\"true\"", "simulated=\"no\""},
        {"test-results.xml", "id=\"overvoltage.pickUp\"", "id=\"overvoltage.dropOff\""},
        {"test-results.xml", "state=\"measured\"", "state=\"guessed\""},
        {"test-results.xml", "value=\"", "value=\"nan"},
        {"test-results.xml", "undervoltage", "undervoltages"},
    };
    const auto good = entries();
    for (const auto& test : cases) {
        auto changed = good;
        auto& text = changed.at(test.entry);
        const auto at = text.find(test.what);
        ASSERT_NE(at, std::string::npos) << test.what << " in " << text;
        text.replace(at, std::string(test.what).size(), test.with);
        auto stream = pack(changed);
        EXPECT_FALSE(model.setDataStream(stream, false)) << test.with;
    }
    for (const auto& [name, text] : good) {
        auto changed = good;
        changed.erase(name);
        auto stream = pack(changed);
        EXPECT_FALSE(model.setDataStream(stream, false)) << "without " << name;
    }
}

TEST_F(ModelTest, RepairTakesWhatIsThereAndSaysWhatIsNot)
{
    ASSERT_TRUE(model.getTestObject()->find("undervoltage/setting")->setValue(75.0));
    ASSERT_TRUE(runToEnd());
    const auto good = entries();
    const auto repairWithout = [&](const char* name) {
        auto changed = good;
        changed.erase(name);
        auto stream = pack(changed);
        return model.setDataStream(stream, true);
    };
    const auto setting = [this] { return model.getTestObject()->find("undervoltage/setting")->getNumber(); };
    ASSERT_TRUE(repairWithout("info.xml"));
    EXPECT_EQ(model.getTestInView().record->origin, Origin::Unknown);
    EXPECT_THAT(takeTexts(), HasSubstr("Which device"));
    ASSERT_TRUE(repairWithout("test-results.xml"));
    EXPECT_FALSE(model.getTestInView().record);
    EXPECT_TRUE(model.areResultsLost());
    EXPECT_EQ(setting(), 75.0);
    ASSERT_TRUE(repairWithout("settings.xml"));
    EXPECT_EQ(setting(), 75.0) << "those of the test";
    EXPECT_THAT(takeTexts(), HasSubstr("those of the test"));
    std::stringstream nothing("nothing at all, but long enough for a signature");
    EXPECT_FALSE(model.setDataStream(nothing, true));
    auto others = pack({{"plan.xml", "<plan/>"}});
    EXPECT_FALSE(model.setDataStream(others, true)) << "nothing of it is ours";
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

TEST_F(ModelTest, AnArchiveChangedByHandIsOpenedAndSaysSo)
{
    ASSERT_TRUE(runToEnd());
    auto changed = entries();
    auto& results = changed.at("test-results.xml");
    const auto at = results.find("value=\"") + 7;
    results.replace(at, results.find('"', at) - at, "81.5");
    auto stream = pack(changed);
    ASSERT_TRUE(model.setDataStream(stream, false));
    EXPECT_THAT(model.getState(), HasSubstr("Test failed: 14 of 15"));
    EXPECT_THAT(model.getState(), HasSubstr("changed by hand"));
    const auto again = save();
    std::stringstream saved(again);
    ASSERT_TRUE(model.setDataStream(saved, false));
    EXPECT_THAT(model.getState(), HasSubstr("changed by hand"));
    ASSERT_TRUE(model.writeReport(home.file("report.html")));
    EXPECT_THAT(Kes::readWholeFile(home.file("report.html")), HasSubstr("CHANGED BY HAND"));
    ASSERT_TRUE(model.writeResults(home.file("r.json")));
    EXPECT_THAT(Kes::readWholeFile(home.file("r.json")), HasSubstr("\"changedByHand\": true"));
    ASSERT_TRUE(runToEnd());
    EXPECT_FALSE(model.getTestInView().record->isChangedByHand()) << "a new test";
}

TEST_F(ModelTest, TheNameplateIsToldAtAnyTimeAndBelongsToItsFile)
{
    namespace Nameplate = KesTree::Nameplate;
    ASSERT_TRUE(runToEnd());
    const auto saved = save();
    auto& comment = *model.getTestObject()->find(Nameplate::Comment);
    ASSERT_TRUE(comment.setText("<second> \"try\""));
    EXPECT_FALSE(model.isResultStale());
    ASSERT_TRUE(model.writeReport(home.file("report.html")));
    EXPECT_THAT(Kes::readWholeFile(home.file("report.html")), HasSubstr("&lt;second&gt; \"try\""));
    ASSERT_TRUE(model.writeResults(home.file("r.json")));
    EXPECT_THAT(Kes::readWholeFile(home.file("r.json")), HasSubstr(R"("comment": "<second> \"try\"")"));
    std::stringstream other(saved);
    ASSERT_TRUE(model.setDataStream(other, false));
    EXPECT_EQ(comment.getText(), "") << "that of another file";
}

TEST_F(ModelTest, AnArchiveFromBeforeNameplateAndChecksumIsWhole)
{
    ASSERT_TRUE(runToEnd());
    auto former = entries();
    const auto erase = [&former](const char* entry, const std::string& from, const std::string& to) {
        auto& text = former.at(entry);
        const auto at = text.find(from);
        ASSERT_NE(at, std::string::npos) << from << " in " << text;
        text.erase(at, text.find(to, at + from.size()) + to.size() - at);
    };
    erase("settings.xml", "<group id=\"nameplate\">", "</group>");
    erase("test-results.xml", "&lt;group id=\"nameplate\"&gt;", "&lt;/group&gt;");
    for (const char* name :
         {" serialNumber=\"", " firmwareVersion=\"", " calibrationDate=\"", " checksum=\""})
        erase("info.xml", name, "\"");
    for (const bool repair : {false, true}) {
        ASSERT_TRUE(model.getTestObject()->find(KesTree::Nameplate::Comment)->setText("of another file"));
        auto stream = pack(former);
        ASSERT_TRUE(model.setDataStream(stream, repair));
        EXPECT_THAT(takeTexts(), IsEmpty());
        EXPECT_EQ(model.getTestObject()->find(KesTree::Nameplate::Comment)->getText(), "");
        EXPECT_FALSE(model.isResultStale());
        EXPECT_FALSE(model.getTestInView().record->isChangedByHand());
        ASSERT_TRUE(model.writeReport(home.file("report.html")));
        EXPECT_THAT(Kes::readWholeFile(home.file("report.html")), HasSubstr("none in the file"));
        ASSERT_TRUE(model.writeResults(home.file("r.json")));
        EXPECT_THAT(
            Kes::readWholeFile(home.file("r.json")),
            testing::AllOf(testing::Not(HasSubstr("checksum")), HasSubstr("\"changedByHand\": false")));
    }
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
    const auto offered = dialogs.getFiles().back().suggestion;
    KesTest::writeFile(offered, "former");
    dialogs.answerFile("");
    presenter.requestReport();
    EXPECT_NE(dialogs.getFiles().back().suggestion, offered);
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
    device()->simulateQuickShutdown();
    EXPECT_TRUE(KesTest::waitFor([this] { return model.getCanStart(); }));
    EXPECT_EQ(model.getRunVerdict(), RunVerdict::Fault);
    EXPECT_THAT(takeTexts(), testing::Not(IsEmpty()));
    EXPECT_EQ(model.getTestInView().record->end, RunEnd::Fault);
    device()->clearFaults();
}

TEST_F(ModelTest, AnArchiveThatIsClosedTakesItsTestAlong)
{
    const auto empty = save();
    ASSERT_TRUE(runToEnd());
    for (const auto& other : {empty, save()}) {
        model.setSpeed(50);
        ASSERT_TRUE(model.startTest());
        ASSERT_TRUE(KesTest::waitFor([this] {
            const auto test = model.getMeasuredTest();
            return test && test->end == RunEnd::Running;
        }));
        std::stringstream stream(other);
        // The run ends when the other archive is there.
        device()->setAnswerDelay(std::chrono::milliseconds(50));
        ASSERT_TRUE(model.setDataStream(stream, false));
        EXPECT_THAT(takeTexts(), HasSubstr("its archive was closed"));
        EXPECT_TRUE(KesTest::waitFor([this] { return model.getCanStart(); }));
        device()->setAnswerDelay(std::chrono::milliseconds(0));
        EXPECT_TRUE(save() == other) << "results of the test of another archive";
    }
}
