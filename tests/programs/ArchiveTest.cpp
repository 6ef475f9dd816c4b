#include "SomeArchive.h"

#include <Overcurrent/data/TestOutcome.h>

#include <gmock/gmock.h>

#include <stdexcept>

using namespace Overcurrent;
using namespace KesTest;

TEST(OvercurrentArchiveTest, ComesBackAsItWasAndWithTheSameBytes)
{
    auto archive = someArchive();
    for (const bool hasResults : {true, false}) {
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
    auto stream = packedWith(someEntries(), "test-results.xml", "\"10234567\"", "\"10034567\"");
    const auto read = OvercurrentArchive::read(stream);
    ASSERT_TRUE(read && read->results);
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
        {"test-results.xml", "rampContact=\"start\"", "rampContact=\"none\""},
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
    const auto whole = someEntries();
    for (const auto& test : cases) {
        auto stream = packedWith(whole, test.entry, test.what, test.with);
        EXPECT_FALSE(OvercurrentArchive::read(stream)) << test.entry << ": " << test.with;
    }
    for (const auto& [name, text] : whole) {
        auto stream = packedWithout(whole, name);
        EXPECT_FALSE(OvercurrentArchive::read(stream)) << "without " << name;
    }
    auto archive = someArchive();
    archive.results->plan.multiples.back() = 6.0;
    EXPECT_FALSE(OvercurrentArchive::read(*archive.pack())) << "points of another plan";
}
