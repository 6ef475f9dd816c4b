#include "ModelRelay.h"

#include <algorithm>
#include <cmath>

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
        break;
    }
    return 1.0;
}

double ownTolerance(const RelaySettings& settings, double multiple, double seconds)
{
    double percent = settings.tolerancePercent;
    if (settings.toleranceKind == TimeToleranceKind::AssignedError)
        percent *= multiple < 4.999 ? 2.5 : multiple < 9.999 ? 1.5 : 1.0;
    return std::max(percent / 100.0 * seconds, settings.toleranceMilliseconds / 1000.0);
}

KesDriver::DeviceTime toDeviceTime(double seconds)
{
    return KesDriver::DeviceTime(std::llround(seconds * 1e6));
}

} // namespace

TestPlan modelPlan()
{
    TestPlan plan;
    plan.multiples = {1.1, 1.3, 2.0, 3.0, 4.9, 5.0, 7.5, 10.0, 15.0, 20.0};
    plan.timeout = 3600.0;
    return plan;
}

ModelRelay ModelRelay::healthy(std::mt19937& random)
{
    ModelRelay relay;
    auto& settings = relay.settings;
    settings.nominalCurrent = 1.0;
    settings.settingCurrent = draw(random, 0.2, 0.8);
    settings.curve = static_cast<CurveKind>(random() % 8);
    settings.timeMultiplier = draw(random, 0.05, 1.0);
    settings.definiteTime = draw(random, 0.05, 3.0);
    settings.toleranceKind = static_cast<TimeToleranceKind>(random() % 2);
    settings.tolerancePercent = draw(random, 2.0, 7.5);
    settings.toleranceMilliseconds = draw(random, 25.0, 40.0);
    settings.currentTolerancePercent = draw(random, 0.0, 4.0);
    relay.currentFactor = 1.0 + drawShare(random) * settings.currentTolerancePercent / 100.0;
    relay.timeShare = drawShare(random);
    relay.dropOffRatio = draw(random, 0.905, 0.985);
    relay.contactTime = draw(random, 0.0, 0.02);
    relay.bounce = draw(random, 0.0, 0.01);
    settings.debounceMilliseconds = relay.bounce * 1000.0 + 0.1;
    settings.resetTime = draw(random, 0.1, 5.0);
    relay.reset = settings.resetTime;
    relay.contactReset = std::max(drawShare(random), 0.0) * (relay.reset - 0.02) + 0.02 - relay.bounce;
    if (settings.curve == CurveKind::DefiniteTimeCurve)
        settings.rampContact = static_cast<RampContactKind>(random() % 3);
    return relay;
}

ModelRelay ModelRelay::faulty(std::mt19937& random, const TestPlan& plan)
{
    auto relay = healthy(random);
    relay.settings.rampContact = RampContactKind::ByStartContact;
    const double sign = random() % 2 ? 1.0 : -1.0;
    switch (random() % 4) {
    case 0:
        // Out of its time beyond what an error of the current excuses.
        relay.currentFactor = 1.0 - sign * relay.settings.currentTolerancePercent / 100.0;
        relay.timeShare = sign * draw(random, 1.05, 3.0);
        break;
    case 1:
        relay.currentFactor =
            1.0 /
            (1.0 + sign * (plan.pickUpTolerancePercent / 100.0 + draw(random, 1.1, 3.0) * plan.pickUp.step));
        break;
    case 2:
        relay.dropOffRatio = plan.minimumRatio - draw(random, 2.5, 5.0) * plan.dropOff.step;
        break;
    default:
        relay.neverTrips = true;
        break;
    }
    return relay;
}

double ModelRelay::getTime(double multiple) const
{
    const bool isDefinite = settings.curve == CurveKind::DefiniteTimeCurve;
    const double exact = isDefinite
                             ? settings.definiteTime
                             : settings.timeMultiplier * tabled(settings.curve, multiple * currentFactor);
    return std::max(exact + timeShare * ownTolerance(settings, multiple, exact), 1e-6);
}

void ModelRelayObject::reset(KesDriver::DeviceTime time)
{
    _contacts = {};
    _now = std::chrono::duration<double>(time).count();
    _multiple = 0.0;
    _isPickedUp = false;
    _travelled = 0.0;
}

void ModelRelayObject::applyOutputs(const KesDriver::OutputState& outputs, KesDriver::DeviceTime time)
{
    _advance(std::chrono::duration<double>(time).count());
    _multiple = outputs.currents[0].magnitude / _relay.settings.settingCurrent;
    auto& [trip, start] = _contacts;
    if (!_isPickedUp && _multiple > _relay.getPickUp()) {
        _isPickedUp = true;
        _move(start, true, _now + _relay.contactTime);
    } else if (_isPickedUp && _multiple < _relay.getDropOff()) {
        _isPickedUp = false;
        _move(start, false, _now + _relay.contactReset);
        _move(trip, false, _now + _relay.contactReset);
    }
    if (_isPickedUp && _multiple > _relay.getPickUp() && _travelled < 1.0 && !_relay.neverTrips)
        _move(trip, true, _now + (1.0 - _travelled) * _relay.getTime(_multiple));
}

void ModelRelayObject::_advance(double now)
{
    if (!_isPickedUp)
        _travelled = std::max(0.0, _travelled - (now - _now) / _relay.reset);
    else if (_multiple > _relay.getPickUp())
        _travelled = std::min(1.0, _travelled + (now - _now) / _relay.getTime(_multiple));
    _now = now;
}

/// The contact moves there and back twice before it stands.
void ModelRelayObject::_move(Contact& contact, bool isClosed, double at)
{
    contact.movements.clear();
    if (contact.isClosed == isClosed)
        return;
    for (const double share : {1.0, 0.7, 0.4, 0.3, 0.0})
        if (const auto time = toDeviceTime(at + share * _relay.bounce);
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
