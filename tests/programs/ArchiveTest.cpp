#include "Archives.h"

#include <Overcurrent/data/TestOutcome.h>

#include <KesProgram/archive/ArchiveHelper.h>

#include <gmock/gmock.h>

#include <stdexcept>

using namespace Overcurrent;
using namespace OvercurrentArchives;
namespace ArchiveHelper = KesProgram::ArchiveHelper;

TEST(OvercurrentArchiveTest, ComesBackAsItWasAndWithTheSameBytes)
{
    for (const bool hasResults : {true, false}) {
        auto archive = someArchive();
        if (!hasResults)
            archive.results.reset();
        const auto read = OvercurrentArchive::read(*archive.pack());
        ASSERT_TRUE(read);
        EXPECT_EQ(read->settings, archive.settings);
        EXPECT_EQ(read->plan, archive.plan);
        EXPECT_EQ(read->results, archive.results);
        EXPECT_EQ(textOf(*read->pack()), textOf(*archive.pack()));
    }
}

TEST(OvercurrentArchiveTest, ResultsThatWereChangedByHandSaySo)
{
    auto entries = entriesOf(someArchive());
    replace(entries["test-results.xml"], "microseconds=\"10234567\"", "microseconds=\"10034567\"");
    auto stream = packed(entries, ArchiveHelper::PREFIX);
    const auto read = OvercurrentArchive::read(stream);
    ASSERT_TRUE(read && read->results);
    EXPECT_TRUE(read->results->isChangedByHand());
    EXPECT_TRUE(OvercurrentArchive::read(*read->pack())->results->isChangedByHand());
    EXPECT_THAT(TestOutcome::create(&*read->results).text, testing::HasSubstr("changed by hand"));
}

TEST(OvercurrentArchiveTest, ATestUnderWayIsKeptAsAStoppedOne)
{
    auto archive = someArchive();
    archive.results->end = RunEnd::Running;
    archive.results->dropOff.reset();
    EXPECT_EQ(OvercurrentArchive::read(*archive.pack())->results->end, RunEnd::Stopped);
}

TEST(OvercurrentArchiveTest, WhatCouldNotBeReadAgainIsNotPacked)
{
    auto archive = someArchive();
    archive.results->device = std::string(std::size_t{5} << 20, 'x');
    EXPECT_THROW(archive.pack(), std::runtime_error) << "an empty file would replace the former one";
}

TEST(OvercurrentArchiveTest, RefusesWhatIsMissingOrMakesNoSense)
{
    struct {
        const char* entry;
        const char* what;
        const char* with;
    } const cases[] = {
        {"info.xml", "format=\"4\"", "format=\"5\""},
        {"plan.xml", " goesOn=\"true\"", ""},
        {"test-results.xml", "tripInput=\"1\"", "tripInput=\"2\""},
        {"test-results.xml", " without=\"1\"", ""},
        {"info.xml", "simulated=\"true\"", "simulated=\"perhaps\""},
        {"plan.xml", "multiple=\"1.7\"", "multiple=\"1.04\""},
        {"plan.xml", "<?xml", "<!DOCTYPE plan [<!ENTITY a \"b\">]><?xml"},
        {"test-results.xml", "microseconds=\"10234567\"", "microseconds=\"999999999999\""},
        {"test-results.xml", "curve=\"standardInverse\"", "curve=\"straight\""},
        {"test-results.xml", "fault=\"A\"", "fault=\"B\""},
        {"test-results.xml", "table=\"1.5:3.25; 4:1\"", "table=\"1.5:3.25; 1.4:1\""},
        {"test-results.xml", "used=\"true\"", "used=\"perhaps\""},
        {"plan.xml", "faults=\"CA N\"", "faults=\"CA NN\""},
        {"plan.xml", "outputsPerPhase=\"1\"", "outputsPerPhase=\"4\""},
        // Such a relay takes longer than the plan waits.
        {"test-results.xml", "timeMultiplier=\"1\"", "timeMultiplier=\"9\""},
    };
    const auto whole = entriesOf(someArchive());
    for (const auto& test : cases) {
        auto entries = whole;
        replace(entries.at(test.entry), test.what, test.with);
        auto stream = packed(entries, ArchiveHelper::PREFIX);
        EXPECT_FALSE(OvercurrentArchive::read(stream)) << test.entry << ": " << test.with;
    }
    for (const auto& [name, text] : whole) {
        auto entries = whole;
        entries.erase(name);
        auto stream = packed(entries, ArchiveHelper::PREFIX);
        EXPECT_FALSE(OvercurrentArchive::read(stream)) << "without " << name;
    }
}

TEST(OvercurrentArchiveTest, RepairKeepsWhatCanBeRead)
{
    const auto whole = entriesOf(someArchive());
    const auto repairedWithout = [&](const std::string& name) {
        auto entries = whole;
        entries[name] = "<broken";
        auto stream = packed(entries, ArchiveHelper::PREFIX);
        return OvercurrentArchive::repair(stream);
    };
    EXPECT_EQ(repairedWithout("plan.xml")->plan, someResults().plan);
    EXPECT_EQ(repairedWithout("plan.xml")->results, someResults());
    EXPECT_FALSE(repairedWithout("test-results.xml")->results);
    EXPECT_EQ(repairedWithout("test-results.xml")->plan, someArchive().plan);
    EXPECT_EQ(repairedWithout("settings.xml")->results, someResults());
    // Whether they come from a simulated device is not known any more, then and after saving.
    auto unknown = someResults();
    unknown.origin = Origin::Unknown;
    unknown.device.clear();
    unknown.startedAt.clear();
    unknown.foreignChecksum = "";
    EXPECT_EQ(repairedWithout("info.xml")->results, unknown);
    EXPECT_EQ(OvercurrentArchive::read(*repairedWithout("info.xml")->pack())->results, unknown);
}

TEST(OvercurrentArchiveTest, NoTruncationIsTakenForAWholeArchive)
{
    const std::string whole = textOf(*someArchive().pack());
    // Behind the last of the four entries there is only the directory of the archive.
    const auto directory = whole.find("PK\x01\x02");
    std::size_t repaired = 0;
    for (std::size_t length = 0; length < directory; length += 7) {
        std::stringstream stream(whole.substr(0, length));
        EXPECT_FALSE(OvercurrentArchive::read(stream)) << length;
        repaired += OvercurrentArchive::repair(stream).has_value();
    }
    EXPECT_GT(repaired, 0u);
}
