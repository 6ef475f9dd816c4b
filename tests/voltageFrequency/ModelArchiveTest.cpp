#include <VoltageFrequency/model/VoltageFrequencyModel.h>

#include <KesTreeRelay/Nameplate.h>

#include <programs/ArchiveParts.h>
#include <support/ProgramRunTest.h>

using namespace VoltageFrequency;
using KesMeasure::Origin;
using KesMeasure::RunEnd;
using KesTest::Entries;
using KesTest::packedWith;
using KesTest::packedWithout;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

class ModelArchiveTest : public KesTest::ProgramRunTest<VoltageFrequencyModel> {
protected:
    ModelArchiveTest() : ProgramRunTest(1e5) {}

    std::string save() { return KesTest::textOf(*model.getDataStream()); }
    Entries entries() { return KesTest::entriesOf(*model.getDataStream()); }
    bool open(const std::string& bytes, bool isRepair = false)
    {
        std::stringstream stream(bytes);
        return model.setDataStream(stream, isRepair);
    }
    bool open(const std::stringstream& archive, bool isRepair = false)
    {
        return open(archive.str(), isRepair);
    }
    std::string report()
    {
        EXPECT_TRUE(model.writeReport(home.file("report.html")));
        return KesTest::readFile(home.file("report.html"));
    }
    std::string results()
    {
        EXPECT_TRUE(model.writeResults(home.file("r.json")));
        return KesTest::readFile(home.file("r.json"));
    }
    KesTree::Node& node(const char* path) { return *model.getTestObject()->find(path); }
};

} // namespace

TEST_F(ModelArchiveTest, AnArchiveComesBackAsItWas)
{
    const auto empty = save();
    ASSERT_TRUE(node("undervoltage/setting").setValue(75.0));
    ASSERT_TRUE(runToEnd());
    EXPECT_FALSE(model.isResultStale());
    const auto record = model.getTestInView().record;
    const auto whole = save();
    model.setPlanError("a field that is no number");
    model.newData("");
    EXPECT_TRUE(model.isUntouched());
    EXPECT_EQ(save(), empty);
    ASSERT_TRUE(open(whole));
    EXPECT_EQ(model.getTestInView().record, record);
    EXPECT_EQ(save(), whole);
    ASSERT_TRUE(node("undervoltage/setting").setValue(76.0));
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
        if (open(damaged)) {
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
    for (const auto& test : cases)
        EXPECT_FALSE(open(packedWith(good, test.entry, test.what, test.with))) << test.with;
    for (const auto& [name, text] : good)
        EXPECT_FALSE(open(packedWithout(good, name))) << "without " << name;
    for (const auto& [entry, part] :
         {std::pair("test-results.xml", "<measurement id=\"frequencyRate.operateTime\""),
          {"info.xml", "<test "}}) {
        auto shortened = good;
        KesTest::replace(shortened[entry], part, "/>", "");
        EXPECT_FALSE(open(KesTest::packed(shortened))) << "without " << part;
    }
}

TEST_F(ModelArchiveTest, RepairTakesWhatIsThereAndSaysWhatIsNot)
{
    ASSERT_TRUE(node("undervoltage/setting").setValue(75.0));
    ASSERT_TRUE(runToEnd());
    const auto good = entries();
    const auto repairWithout = [&](const char* name) { return open(packedWithout(good, name), true); };
    const auto setting = [this] { return node("undervoltage/setting").getNumber(); };
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
    EXPECT_FALSE(open("nothing at all, but long enough for a signature", true));
    EXPECT_FALSE(open(KesTest::packed({{"plan.xml", "<plan/>"}}), true)) << "nothing of it is ours";
}

TEST_F(ModelArchiveTest, AnArchiveChangedByHandIsOpenedAndSaysSo)
{
    ASSERT_TRUE(runToEnd());
    auto changed = entries();
    KesTest::replace(changed.at("info.xml"), "startedAt=\"2", "startedAt=\"1");
    ASSERT_TRUE(open(KesTest::packed(changed)));
    EXPECT_THAT(report(), Not(HasSubstr("outcome passed"))) << "though all values have";
    KesTest::replace(changed.at("test-results.xml"), "value=\"", "\"", "value=\"81.5\"");
    ASSERT_TRUE(open(KesTest::packed(changed)));
    for (int times = 0; times < 2; ++times) {
        EXPECT_THAT(model.getState(),
                    AllOf(HasSubstr("Test failed: 14 of 15"), HasSubstr("changed by hand")));
        ASSERT_TRUE(open(save()));
    }
    EXPECT_THAT(report(), AllOf(HasSubstr("CHANGED BY HAND"), HasSubstr("14 of 15"), HasSubstr("<td>81.50<"),
                                HasSubstr("SIMULATED DEVICE")));
    EXPECT_THAT(results(), HasSubstr("\"changedByHand\": true"));
    ASSERT_TRUE(runToEnd());
    EXPECT_FALSE(model.getTestInView().record->isChangedByHand()) << "a new test";
}

TEST_F(ModelArchiveTest, TheNameplateIsToldAtAnyTimeAndBelongsToItsFile)
{
    ASSERT_TRUE(runToEnd());
    const auto saved = save();
    auto& comment = node(KesTree::Nameplate::Comment);
    ASSERT_TRUE(comment.setText("<second> \"try\""));
    EXPECT_FALSE(model.isResultStale());
    EXPECT_THAT(report(), HasSubstr("&lt;second&gt; \"try\""));
    EXPECT_THAT(results(), HasSubstr(R"("comment": "<second> \"try\"")"));
    ASSERT_TRUE(open(saved));
    EXPECT_EQ(comment.getText(), "") << "that of another file";
}

TEST_F(ModelArchiveTest, AnArchiveFromBeforeNameplateAndChecksumIsWhole)
{
    ASSERT_TRUE(runToEnd());
    auto former = entries();
    KesTest::replace(former.at("settings.xml"), "<group id=\"nameplate\">", "</group>", "");
    KesTest::replace(former.at("test-results.xml"), "&lt;group id=\"nameplate\"&gt;", "&lt;/group&gt;", "");
    for (const char* name :
         {" serialNumber=\"", " firmwareVersion=\"", " calibrationDate=\"", " checksum=\""})
        KesTest::replace(former.at("info.xml"), name, "\"", "");
    for (const bool isRepair : {false, true}) {
        auto& comment = node(KesTree::Nameplate::Comment);
        ASSERT_TRUE(comment.setText("of another file"));
        ASSERT_TRUE(open(KesTest::packed(former), isRepair));
        EXPECT_THAT(takeTexts(), IsEmpty());
        EXPECT_EQ(comment.getText(), "");
        EXPECT_FALSE(model.isResultStale());
        EXPECT_FALSE(model.getTestInView().record->isChangedByHand());
        EXPECT_THAT(report(), HasSubstr("none in the file"));
        EXPECT_THAT(entries().at("info.xml"), Not(HasSubstr("checksum")));
        EXPECT_THAT(results(), AllOf(Not(HasSubstr("checksum")), HasSubstr("\"changedByHand\": false")));
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
        // The run ends when the other archive is there.
        getDevice()->setAnswerDelay(std::chrono::milliseconds(50));
        if (other == empty)
            model.newData("");
        else
            ASSERT_TRUE(open(other));
        EXPECT_THAT(takeTexts(), HasSubstr("its archive was closed"));
        EXPECT_TRUE(KesTest::waitFor([this] { return model.getCanStart(); }));
        getDevice()->setAnswerDelay(std::chrono::milliseconds(0));
        EXPECT_TRUE(save() == other) << "results of the test of another archive";
    }
}
