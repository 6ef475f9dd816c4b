#include "ModelRelay.h"

#include <Overcurrent/data/TestSequences.h>

#include <algorithm>
#include <cmath>
#include <iterator>

using namespace Overcurrent;

namespace {

/// The time of a curve without its multiplier.
double tabled(CurveKind curve, double multiple)
{
    const double m = std::min(multiple, 20.0);
    switch (curve) {
    case CurveKind::StandardInverse:
        return 0.14 / (std::pow(m, 0.02) - 1.0);
    case CurveKind::VeryInverse:
        return 13.5 / (m - 1.0);
    case CurveKind::ExtremelyInverse:
        return 80.0 / (m * m - 1.0);
    case CurveKind::LongTimeInverse:
        return 120.0 / (m - 1.0);
    case CurveKind::IeeeModeratelyInverse:
        return 0.0515 / (std::pow(m, 0.02) - 1.0) + 0.114;
    case CurveKind::IeeeVeryInverse:
        return 19.61 / (m * m - 1.0) + 0.491;
    case CurveKind::IeeeExtremelyInverse:
        return 28.2 / (m * m - 1.0) + 0.1217;
    case CurveKind::DefiniteTimeCurve:
    case CurveKind::TableCurve:
        break;
    }
    return 1.0;
}

/// A power law between the neighbours.
std::optional<double> readTable(const KesTree::CurveTable::Pairs& table, double multiple)
{
    if (multiple < table.front().multiple - 1e-9)
        return std::nullopt;
    double seconds = table.back().seconds;
    for (auto at = table.rbegin(); std::next(at) != table.rend(); ++at) {
        const auto& [upper, ofUpper] = *at;
        const auto& [lower, ofLower] = *std::next(at);
        if (multiple >= upper)
            break;
        const double part =
            (std::log10(upper) - std::log10(multiple)) / (std::log10(upper) - std::log10(lower));
        seconds = std::pow(ofUpper, 1.0 - part) * std::pow(ofLower, part);
        if (multiple >= lower)
            break;
    }
    return seconds;
}

std::optional<double> ownTime(const Stage& stage, double multiple)
{
    if (!(multiple > 1.0))
        return std::nullopt;
    if (stage.curve == CurveKind::TableCurve)
        return readTable(stage.table, multiple);
    return stage.curve == CurveKind::DefiniteTimeCurve ? stage.definiteTime
                                                       : stage.timeMultiplier * tabled(stage.curve, multiple);
}

double ownTolerance(const RelaySettings& settings, double multiple, double seconds)
{
    double percent = settings.tolerancePercent;
    if (settings.toleranceKind == TimeToleranceKind::AssignedError)
        percent *= multiple < 4.999 ? 2.5 : multiple < 9.999 ? 1.5 : 1.0;
    return std::max(percent / 100.0 * seconds, settings.toleranceMilliseconds / 1000.0);
}

/// The angle by which one leads the other, within half a turn.
double lead(double degrees, double ofOther)
{
    return std::remainder(degrees - ofOther, 360.0);
}

/// Rectangular parts, and back.
KesDriver::Phasor sum(const std::array<KesDriver::Phasor, 3>& phases)
{
    constexpr double radian = 57.295779513082320877;
    double x = 0.0;
    double y = 0.0;
    for (const auto& [magnitude, degrees] : phases) {
        x += magnitude * std::cos(degrees / radian);
        y += magnitude * std::sin(degrees / radian);
    }
    return {std::hypot(x, y), std::atan2(y, x) * radian};
}

} // namespace

bool ModelRelay::_isFaultSeen() const
{
    ModelRelay ideal = *this;
    ideal.errors = {};
    ideal.deadPhase.reset();
    constexpr double margin = 0.002;
    const double share = settings.currentTolerancePercent / 100.0;
    for (const auto& point : plan.getPoints()) {
        const auto outputs = outputsOf(*this, point);
        double earliest = 1e9;
        double latest = 1e9;
        for (std::size_t i = 0; i < errors.size(); ++i) {
            const double multiple = ideal.getMultiple(i, outputs);
            const auto tolerance = [&](double seconds) {
                return ownTolerance(settings, multiple * (1.0 - share), seconds);
            };
            if (const auto time = ownTime(settings.stages[i], multiple * (1.0 + share)))
                earliest = std::min(earliest, *time - tolerance(*time));
            if (const auto time = ownTime(settings.stages[i], multiple * (1.0 - share)))
                latest = std::min(latest, *time + tolerance(*time));
        }
        const auto time = getTime(outputs);
        if (!time || *time > latest + margin || *time < earliest - margin)
            return true;
    }
    return false;
}

double ModelRelay::getMultiple(std::size_t stage, const KesDriver::OutputState& outputs) const
{
    const auto& own = settings.stages[stage];
    const auto& error = errors[stage];
    if (!own.isUsed || error.isMissing)
        return 0.0;
    auto currents = outputs.currents;
    if (deadPhase)
        currents[*deadPhase].magnitude = 0.0;
    const auto counts = [&](double ofCurrent, double ofVoltage) {
        if (own.direction == DirectionKind::NonDirectional)
            return true;
        const bool isForward = std::fabs(lead(ofCurrent, ofVoltage + settings.characteristicAngle)) < 90.0;
        return (isForward == (own.direction == DirectionKind::ForwardOnly)) != error.isInverted;
    };
    double seen = 0.0;
    if (stage + 1 == errors.size()) {
        const auto current = sum(currents);
        if (counts(current.degrees, sum(outputs.voltages).degrees + 180.0))
            seen = current.magnitude;
    } else {
        for (std::size_t i = 0; i < currents.size(); ++i)
            if (counts(currents[i].degrees, outputs.voltages[i].degrees))
                seen = std::max(seen, currents[i].magnitude);
    }
    return seen / own.settingCurrent;
}

std::optional<double> ModelRelay::getTime(std::size_t stage, const KesDriver::OutputState& outputs) const
{
    const auto& error = errors[stage];
    const double multiple = getMultiple(stage, outputs);
    const auto exact = ownTime(settings.stages[stage], multiple * error.currentFactor);
    if (!exact || error.neverTrips)
        return std::nullopt;
    return std::max(*exact + error.timeShare * ownTolerance(settings, multiple, *exact), 1e-6);
}

std::optional<double> ModelRelay::getTime(const KesDriver::OutputState& outputs) const
{
    std::optional<double> shortest;
    for (std::size_t i = 0; i < errors.size(); ++i)
        if (const auto time = getTime(i, outputs))
            shortest = std::min(*time, shortest.value_or(*time));
    return shortest;
}

bool ModelRelay::picksUp(const KesDriver::OutputState& outputs) const
{
    for (std::size_t i = 0; i < errors.size(); ++i)
        if (getMultiple(i, outputs) * errors[i].currentFactor > 1.0)
            return true;
    return false;
}

bool ModelRelay::dropsOff(const KesDriver::OutputState& outputs) const
{
    for (std::size_t i = 0; i < errors.size(); ++i)
        if (getMultiple(i, outputs) * errors[i].currentFactor >= dropOffRatio)
            return false;
    return true;
}

KesDriver::OutputState outputsOf(const ModelRelay& relay, const PlannedPoint& point)
{
    return TestSequences::point(relay.settings, relay.plan, point)[0].outputs;
}

KesDriver::OutputState outputsOfRamp(const ModelRelay& relay, double multiple)
{
    return TestSequences::pickUp(relay.settings, relay.plan, {multiple})[0].outputs;
}

void ModelRelayObject::reset(KesDriver::DeviceTime time)
{
    _contacts = {};
    _now = std::chrono::duration<double>(time).count();
    _outputs = {};
    _elements = {};
}

bool ModelRelayObject::_isPickedUp() const
{
    return std::any_of(_elements.begin(), _elements.end(),
                       [](const Element& element) { return element.isPickedUp; });
}

void ModelRelayObject::applyOutputs(const KesDriver::OutputState& outputs, KesDriver::DeviceTime time)
{
    _advance(std::chrono::duration<double>(time).count());
    _outputs = outputs;
    const bool wasPickedUp = _isPickedUp();
    _measure();
    auto& [trip, start] = _contacts;
    if (!wasPickedUp && _isPickedUp()) {
        _move(start, true, _now + _relay.contactTime);
    } else if (wasPickedUp && !_isPickedUp()) {
        _move(start, false, _now + _relay.contactReset);
        _move(trip, false, _now + _relay.contactReset);
    }
    _predictTrip();
}

void ModelRelayObject::_measure()
{
    for (std::size_t i = 0; i < _elements.size(); ++i) {
        const double multiple = _relay.getMultiple(i, _outputs) * _relay.errors[i].currentFactor;
        auto& element = _elements[i];
        element.isPickedUp = element.isPickedUp ? multiple >= _relay.dropOffRatio : multiple > 1.0;
    }
}

void ModelRelayObject::_predictTrip()
{
    std::optional<double> rest;
    for (std::size_t i = 0; i < _elements.size(); ++i) {
        const auto time = _relay.getTime(i, _outputs);
        if (!time || !_elements[i].isPickedUp)
            continue;
        // It has operated, and its contact is on its way.
        if (_elements[i].travelled >= 1.0)
            return;
        const double own = (1.0 - _elements[i].travelled) * *time;
        rest = std::min(own, rest.value_or(own));
    }
    if (rest)
        _move(_contacts[0], true, _now + *rest);
}

void ModelRelayObject::_advance(double now)
{
    for (std::size_t i = 0; i < _elements.size(); ++i) {
        auto& [isPickedUp, travelled] = _elements[i];
        if (!isPickedUp)
            travelled = std::max(0.0, travelled - (now - _now) / _relay.reset);
        else if (const auto time = _relay.getTime(i, _outputs))
            travelled = std::min(1.0, travelled + (now - _now) / *time);
    }
    _now = now;
}

/// The contact moves there and back twice before it stands.
void ModelRelayObject::_move(Contact& contact, bool isClosed, double at)
{
    contact.movements.clear();
    if (contact.isClosed == isClosed)
        return;
    for (const double share : {1.0, 0.7, 0.4, 0.3, 0.0})
        if (const auto time = KesDriver::toDeviceTime(at + share * _relay.bounce);
            contact.movements.empty() || time < contact.movements.back())
            contact.movements.push_back(time);
    // An even number of them leaves the contact where it was.
    if (contact.movements.size() % 2 == 0)
        contact.movements.erase(contact.movements.begin());
}

std::optional<KesDriver::InputEvent> ModelRelayObject::getNextChange() const
{
    std::optional<KesDriver::InputEvent> next;
    const unsigned inputs[] = {_relay.settings.tripInput, _relay.settings.startInput};
    for (std::size_t i = 0; i < _contacts.size(); ++i) {
        const auto& contact = _contacts[i];
        if (!contact.movements.empty() && (!next || contact.movements.back() < next->time))
            next = {inputs[i], !contact.isClosed, contact.movements.back(), std::nullopt};
    }
    return next;
}

void ModelRelayObject::acceptChange()
{
    const auto next = getNextChange();
    auto& contact = _contacts[next->input == _relay.settings.tripInput ? 0 : 1];
    contact.isClosed = next->isClosed;
    contact.movements.pop_back();
}
