#include <KesMeasure/Outcome.h>
#include <KesMeasure/TestCircumstances.h>
#include <KesMeasure/XmlAttributes.h>

#include <libxml++/libxml++.h>

#include <gmock/gmock.h>

#include <programs/ReplaceText.h>

using namespace KesMeasure;
using testing::HasSubstr;

namespace {

constexpr const char* someResults = "<results value=\"1.5\"/>";

TestCircumstances someCircumstances()
{
    TestCircumstances circumstances;
    circumstances.device = "KESTO-3 No. 00017";
    circumstances.serialNumber = "00017";
    circumstances.firmwareVersion = "2.4.1 <&\">";
    circumstances.calibrationDate = "2026-03-31";
    circumstances.startedAt = "2026-11-20 14:05:09";
    return circumstances;
}

std::string toText(const TestCircumstances& circumstances, const std::string& results)
{
    return writeXml("test", [&](xmlpp::Element& root) { circumstances.writeCircumstances(root, results); });
}

TestCircumstances fromText(const std::string& text, const std::string& results)
{
    TestCircumstances circumstances;
    EXPECT_TRUE(readXml(text, "test", [&](const xmlpp::Element& root) {
        return circumstances.readCircumstances(root, results);
    }));
    return circumstances;
}

} // namespace

TEST(TestCircumstancesTest, EveryChangeIsNoticedAndRemembered)
{
    const auto written = toText(someCircumstances(), someResults);
    EXPECT_EQ(fromText(written, someResults), someCircumstances());
    for (const auto& [what, with] : {std::pair("00017\"", "00018\""),
                                     {"\"00017\"", "\"00018\""},
                                     {"2.4.1", "2.4.2"},
                                     {"2026-03-31", "2026-04-31"},
                                     {"14:05", "14:06"},
                                     {"\"false\"", "\"true\""},
                                     {" firmwareVersion=\"2.4.1 ", " other=\""}}) {
        auto changed = written;
        KesTest::replace(changed, what, with);
        EXPECT_TRUE(fromText(changed, someResults).isChangedByHand()) << with;
    }
    const std::string others = "<results value=\"1.6\"/>";
    const auto changed = fromText(written, others);
    ASSERT_TRUE(changed.isChangedByHand());
    EXPECT_TRUE(fromText(toText(changed, others), others).isChangedByHand())
        << "saving does not make it a good one";
    EXPECT_FALSE(fromText(toText(changed, others), someResults).isChangedByHand());
}

TEST(TestCircumstancesTest, AChangedResultHasNoSignOfAPassedOne)
{
    auto circumstances = someCircumstances();
    const Outcome passed{"Test passed", Mark::Passed};
    EXPECT_EQ(passed.withCircumstances(circumstances).text, "Test passed");
    circumstances.foreignChecksum = "0123";
    const auto changed = passed.withCircumstances(circumstances);
    EXPECT_THAT(changed.text, HasSubstr("changed by hand"));
    EXPECT_EQ(changed.mark, Mark::None);
    EXPECT_EQ((Outcome{"Test failed", Mark::Failed}.withCircumstances(circumstances).mark), Mark::Failed);
}
