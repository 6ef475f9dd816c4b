#include "Archives.h"

#include <Overcurrent/model/OvercurrentModel.h>

#include <KesProgram/archive/ArchiveHelper.h>

#include <gtest/gtest.h>

#include <chrono>
#include <iterator>

namespace OvercurrentArchives {

using namespace Overcurrent;
namespace ArchiveHelper = KesProgram::ArchiveHelper;
namespace Nodes = KesTree::RelayNodes;

TestResults someResults()
{
    TestResults results;
    results.settings[StageId::First].settingCurrent = 0.75;
    results.settings.resetTime = 3.0;
    results.settings.toleranceKind = TimeToleranceKind::AssignedError;
    results.settings[StageId::Second].isUsed = true;
    results.settings[StageId::Second].settingCurrent = 9.0;
    results.settings[StageId::Second].direction = DirectionKind::ReverseOnly;
    results.settings[StageId::Residual].table = {{1.5, 3.25}, {4.0, 1.0}};
    results.plan.multiples = {2.0, 3.1, 5.0};
    results.points = {{{Fault::A, 2.0}, MeasureState::Measured, std::chrono::microseconds(10234567)},
                      {{Fault::A, 3.1}, MeasureState::NoOperation, {}},
                      {{Fault::A, 5.0}, MeasureState::ContactEarly, {}}};
    results.pickUp = RampResult{MeasureState::Measured, 1.01, 1.0};
    results.dropOff = RampResult{MeasureState::NoOperation, 0.0};
    results.end = RunEnd::Complete;
    results.device = "KESTO-3 No. 00017 <&\">";
    results.origin = Origin::Simulated;
    results.startedAt = "2024-03-01 14:05:09";
    return results;
}

std::string textOf(std::istream& stream)
{
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

OvercurrentArchive someArchive()
{
    OvercurrentModel model;
    EXPECT_TRUE(model.getTestObject()->find(Nodes::SettingCurrent)->setValue(0.9));
    OvercurrentArchive archive;
    archive.settings = model.getTestObject()->serialize();
    archive.plan.multiples = {1.7, 4.0};
    archive.plan.dropOff.dwell = 0.3;
    archive.plan.goesOn = true;
    archive.plan.faults = {Fault::CA, Fault::N};
    archive.plan.direction = FaultDirection::Reverse;
    archive.results = someResults();
    return archive;
}

Entries entriesOf(const OvercurrentArchive& archive)
{
    return entriesOf(*archive.pack());
}

Entries entriesOf(std::istream& packedStream)
{
    ArchiveHelper::DataMap data;
    EXPECT_TRUE(ArchiveHelper::unpackStreamToData(packedStream, data, ArchiveHelper::PREFIX));
    Entries entries;
    for (const auto& [name, stream] : data)
        entries[name] = textOf(*stream);
    return entries;
}

std::stringstream packed(const Entries& entries, const std::string& prefix)
{
    ArchiveHelper::DataMap data;
    for (const auto& [name, text] : entries)
        data[name] = std::make_unique<std::stringstream>(text);
    std::stringstream stream;
    EXPECT_TRUE(ArchiveHelper::packDataToStream(stream, data, prefix));
    return stream;
}

void replace(std::string& text, const std::string& what, const std::string& with)
{
    const auto at = text.find(what);
    ASSERT_NE(at, std::string::npos) << what << " in\n" << text;
    text.replace(at, what.size(), with);
}

} // namespace OvercurrentArchives
