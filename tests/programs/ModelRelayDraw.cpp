// Relays that are healthy or faulty by chance.

#include "ModelRelay.h"

#include <algorithm>

using namespace Overcurrent;

namespace {

double draw(std::mt19937& random, double least, double most)
{
    return least + (most - least) * static_cast<double>(random()) / static_cast<double>(std::mt19937::max());
}

/// Within [-1, 1], one time in three at one of the ends.
double drawShare(std::mt19937& random)
{
    switch (random() % 6) {
    case 0:
        return -1.0;
    case 1:
        return 1.0;
    default:
        return draw(random, -1.0, 1.0);
    }
}

} // namespace

ModelRelay ModelRelay::healthy(std::mt19937& random)
{
    ModelRelay relay;
    relay.plan.multiples = {1.1, 1.3, 2.0, 3.0, 4.9, 5.0, 7.5, 10.0, 15.0, 20.0};
    relay.plan.timeout = 3600.0;
    auto& settings = relay.settings;
    auto& stage = settings[StageId::First];
    settings.nominalCurrent = 1.0;
    stage.settingCurrent = draw(random, 0.2, 0.8);
    stage.curve = static_cast<CurveKind>(random() % 8);
    stage.timeMultiplier = draw(random, 0.05, 1.0);
    stage.definiteTime = draw(random, 0.05, 3.0);
    settings.toleranceKind = static_cast<TimeToleranceKind>(random() % 2);
    settings.tolerancePercent = draw(random, 2.0, 7.5);
    settings.toleranceMilliseconds = draw(random, 25.0, 40.0);
    settings.currentTolerancePercent = draw(random, 0.0, 4.0);
    for (auto& error : relay.errors) {
        error.currentFactor = 1.0 + drawShare(random) * settings.currentTolerancePercent / 100.0;
        error.timeShare = drawShare(random);
    }
    relay.dropOffRatio = draw(random, 0.905, 0.985);
    relay.contactTime = draw(random, 0.0, 0.02);
    relay.bounce = draw(random, 0.0, 0.01);
    settings.debounceMilliseconds = relay.bounce * 1000.0 + 0.1;
    settings.resetTime = draw(random, 0.1, 5.0);
    relay.reset = settings.resetTime;
    relay.contactReset = std::max(drawShare(random), 0.0) * (relay.reset - 0.02) + 0.02 - relay.bounce;
    if (stage.curve == CurveKind::DefiniteTimeCurve)
        settings.rampContact = static_cast<RampContactKind>(random() % 3);
    return relay;
}

ModelRelay ModelRelay::faulty(std::mt19937& random)
{
    auto relay = healthy(random);
    relay.settings.rampContact = RampContactKind::ByStartContact;
    auto& error = relay.errors[0];
    const double sign = random() % 2 ? 1.0 : -1.0;
    switch (random() % 4) {
    case 0:
        // Out of its time beyond what an error of the current excuses.
        error.currentFactor = 1.0 - sign * relay.settings.currentTolerancePercent / 100.0;
        error.timeShare = sign * draw(random, 1.05, 3.0);
        break;
    case 1:
        error.currentFactor = 1.0 / (1.0 + sign * (relay.plan.pickUpTolerancePercent / 100.0 +
                                                   draw(random, 1.1, 3.0) * relay.plan.pickUp.step));
        break;
    case 2:
        relay.dropOffRatio = relay.plan.minimumRatio - draw(random, 2.5, 5.0) * relay.plan.dropOff.step;
        break;
    default:
        error.neverTrips = true;
        break;
    }
    return relay;
}

namespace {

/// A list that rises and falls as it should.
KesTree::CurveTable::Pairs drawTable(std::mt19937& random)
{
    KesTree::CurveTable::Pairs table{{1.02, draw(random, 5.0, 20.0)}};
    for (int i = 0; i < 4; ++i)
        table.push_back(
            {table.back().multiple * draw(random, 1.3, 3.0), table.back().seconds * draw(random, 0.3, 1.0)});
    return table;
}

void drawStage(std::mt19937& random, Stage& stage, double setting)
{
    stage.isUsed = true;
    stage.settingCurrent = setting;
    stage.curve = static_cast<CurveKind>(random() % 9);
    stage.timeMultiplier = draw(random, 0.05, 0.5);
    stage.definiteTime = draw(random, 0.05, 1.0);
    stage.table = drawTable(random);
}

} // namespace

ModelRelay ModelRelay::healthyStages(std::mt19937& random)
{
    auto relay = healthy(random);
    auto& settings = relay.settings;
    settings.rampContact = RampContactKind::ByStartContact;
    settings.characteristicAngle = draw(random, -90.0, 60.0);
    const double first = settings[StageId::First].settingCurrent;
    if (random() % 4 == 0)
        drawStage(random, settings[StageId::First], first);
    if (random() % 4)
        drawStage(random, settings[StageId::Second], first * draw(random, 2.0, 8.0));
    if (random() % 2)
        drawStage(random, settings[StageId::Third], first * draw(random, 8.0, 16.0));
    if (random() % 2)
        drawStage(random, settings[StageId::Residual], first * draw(random, 0.2, 1.5));
    // One stage at least sees each fault.
    for (const auto stage : {StageId::Second, StageId::Third})
        settings[stage].direction = static_cast<DirectionKind>(random() % 3);
    const bool isForward = random() % 2;
    relay.plan.direction = isForward ? FaultDirection::Forward : FaultDirection::Reverse;
    const auto same = isForward ? DirectionKind::ForwardOnly : DirectionKind::ReverseOnly;
    for (const auto stage : {StageId::First, StageId::Residual})
        settings[stage].direction = random() % 2 ? same : DirectionKind::NonDirectional;
    relay.plan.faults.clear();
    for (const auto fault : allFaults)
        if (random() % 3 == 0 && (fault != Fault::N || settings[StageId::Residual].isUsed))
            relay.plan.faults.push_back(fault);
    if (relay.plan.faults.empty())
        relay.plan.faults = {Fault::BC};
    return relay;
}

ModelRelay ModelRelay::faultyStages(std::mt19937& random)
{
    for (;;) {
        auto relay = healthyStages(random);
        auto& error = relay.errors[random() % relay.errors.size()];
        switch (random() % 4) {
        case 0:
            error.timeShare = (random() % 2 ? 1.0 : -1.0) * draw(random, 1.5, 4.0);
            break;
        case 1:
            error.isMissing = true;
            break;
        case 2:
            error.isInverted = true;
            break;
        default:
            relay.deadPhase = random() % 3;
            break;
        }
        if (relay._isFaultSeen())
            return relay;
    }
}
