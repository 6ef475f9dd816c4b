#include <VoltageFrequency/model/VoltageFrequencyModel.h>

#include <KesCommon/FileSystem.h>
#include <KesProgram/archive/ArchiveHelper.h>
#include <KesTreeRelay/Nameplate.h>

#include <support/ProgramRunTest.h>

#include <iterator>
#include <map>
#include <sstream>

using namespace VoltageFrequency;
namespace ArchiveHelper = KesProgram::ArchiveHelper;
using KesMeasure::Origin;
using KesMeasure::RunEnd;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

std::string textOf(std::istream& stream)
{
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

using Entries = std::map<std::string, std::string>;

class ModelArchiveTest : public KesTest::ProgramRunTest<VoltageFrequencyModel> {
protected:
    ModelArchiveTest() : ProgramRunTest(1e5) {}

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
};

} // namespace

TEST_F(ModelArchiveTest, AnArchiveComesBackAsItWas)
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

TEST_F(ModelArchiveTest, ADamagedArchiveIsReadWholeOrNotAtAll)
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

TEST_F(ModelArchiveTest, RepairTakesWhatIsThereAndSaysWhatIsNot)
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

TEST_F(ModelArchiveTest, AnArchiveChangedByHandIsOpenedAndSaysSo)
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

TEST_F(ModelArchiveTest, TheNameplateIsToldAtAnyTimeAndBelongsToItsFile)
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

TEST_F(ModelArchiveTest, AnArchiveFromBeforeNameplateAndChecksumIsWhole)
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

TEST_F(ModelArchiveTest, AnArchiveThatIsClosedTakesItsTestAlong)
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
        getDevice()->setAnswerDelay(std::chrono::milliseconds(50));
        ASSERT_TRUE(model.setDataStream(stream, false));
        EXPECT_THAT(takeTexts(), HasSubstr("its archive was closed"));
        EXPECT_TRUE(KesTest::waitFor([this] { return model.getCanStart(); }));
        getDevice()->setAnswerDelay(std::chrono::milliseconds(0));
        EXPECT_TRUE(save() == other) << "results of the test of another archive";
    }
}
