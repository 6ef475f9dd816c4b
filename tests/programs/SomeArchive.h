#pragma once

#include <Overcurrent/data/OvercurrentArchive.h>
#include <Overcurrent/model/OvercurrentModel.h>

#include <programs/ArchiveParts.h>

#include <chrono>

/// Archives of the program Overcurrent with a value of each kind.
namespace KesTest {

inline Overcurrent::TestResults someResults()
{
    using namespace Overcurrent;
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

/// Of other settings and another plan than the results.
inline Overcurrent::OvercurrentArchive someArchive()
{
    using namespace Overcurrent;
    OvercurrentModel model;
    EXPECT_TRUE(model.getTestObject()->find(KesTree::RelayNodes::SettingCurrent)->setValue(0.9));
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

inline Entries someEntries()
{
    return entriesOf(*someArchive().pack());
}

} // namespace KesTest
