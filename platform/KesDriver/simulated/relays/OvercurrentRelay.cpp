#include <KesDriver/simulated/relays/OvercurrentRelay.h>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace KesDriver {

namespace {

constexpr std::mt19937::result_type seed = 20240229;

constexpr double dropOffRatio = 0.955;

/// Contact times in milliseconds; each varies by up to the jitter.
constexpr double closeTime = 9.0;
constexpr double openTime = 14.0;
constexpr double jitter = 1.5;

struct Constants {
    double k;
    double a;
    double c = 0.0;
};

Constants getConstants(OvercurrentRelay::Curve curve)
{
    using Curve = OvercurrentRelay::Curve;
    switch (curve) {
    case Curve::VeryInverse:
        return {13.5, 1.0};
    case Curve::ExtremelyInverse:
        return {80.0, 2.0};
    case Curve::LongTimeInverse:
        return {120.0, 1.0};
    case Curve::IeeeModeratelyInverse:
        return {0.0515, 0.02, 0.114};
    case Curve::IeeeVeryInverse:
        return {19.61, 2.0, 0.491};
    case Curve::IeeeExtremelyInverse:
        return {28.2, 2.0, 0.1217};
    case Curve::StandardInverse:
    case Curve::DefiniteTime:
        break;
    }
    return {0.14, 0.02};
}

DeviceTime toDeviceTime(double seconds)
{
    constexpr double never = 1e9;
    return DeviceTime(std::llround(std::min(seconds, never) * 1e6));
}

} // namespace

void OvercurrentRelay::Contact::move(bool closed, Time at)
{
    changeAt = isClosed == closed ? Moment() : Moment(at);
}

OvercurrentRelay::OvercurrentRelay(const Settings& settings) : _settings(settings)
{
    reset(Time(0));
}

void OvercurrentRelay::reset(Time time)
{
    _random.seed(seed);
    _currentError = _draw(0.003, 0.007);
    _timeError = _draw(0.006, 0.014);
    _time = time;
    _multiple = 0.0;
    _isPickedUp = false;
    _travelled = 0.0;
    _start = {};
    _trip = {};
}

void OvercurrentRelay::applyOutputs(const OutputState& outputs, Time time)
{
    _advance(time);
    _multiple = outputs.currents[0].magnitude / (_settings.settingCurrent * (1.0 + _currentError));
    if (!_isPickedUp && _multiple > 1.0)
        _pickUp();
    else if (_isPickedUp && _multiple < dropOffRatio)
        _dropOff();
    _predictTrip();
}

/// A relay's own characteristic, not the one with which a test program judges it: sharing that would hide a
/// fault in it.
std::optional<double> OvercurrentRelay::_getOperateTime(double multiple) const
{
    constexpr double endOfDependentTime = 20.0;
    if (!(multiple > 1.0))
        return std::nullopt;
    if (_settings.curve == Curve::DefiniteTime)
        return _settings.definiteTime;
    const auto [k, a, c] = getConstants(_settings.curve);
    const double excess = std::expm1(a * std::log(std::min(multiple, endOfDependentTime)));
    const double time = _settings.timeMultiplier * (k / excess + c);
    return std::isfinite(time) ? std::optional(time) : std::nullopt;
}

void OvercurrentRelay::_advance(Time time)
{
    const auto full = _getOperateTime(_multiple);
    if (_isPickedUp && full)
        _travelled += std::chrono::duration<double>(time - _time).count() / (*full * (1.0 + _timeError));
    _time = time;
}

void OvercurrentRelay::_pickUp()
{
    _isPickedUp = true;
    _travelled = 0.0;
    _start.move(true, _time + _delay(closeTime));
    _tripDelay = _delay(closeTime);
}

void OvercurrentRelay::_dropOff()
{
    _isPickedUp = false;
    _travelled = 0.0;
    _start.move(false, _time + _delay(openTime));
    _trip.move(false, _time + _delay(openTime));
}

void OvercurrentRelay::_predictTrip()
{
    // Once the measuring element has operated, its contact is on its way whatever the current does above
    // drop-off.
    if (!_isPickedUp || _trip.isClosed || (_trip.changeAt && _travelled >= 1.0))
        return;
    const auto full = _getOperateTime(_multiple);
    if (!full) {
        _trip.changeAt.reset();
        return;
    }
    const double remaining = std::max(0.0, 1.0 - _travelled) * *full * (1.0 + _timeError);
    _trip.move(true, _time + toDeviceTime(remaining) + _tripDelay);
}

std::optional<InputEvent> OvercurrentRelay::getNextChange() const
{
    const auto change = [](unsigned input, const Contact& contact) {
        return InputEvent{input, !contact.isClosed, *contact.changeAt, std::nullopt};
    };
    if (_start.changeAt && (!_trip.changeAt || *_start.changeAt <= *_trip.changeAt))
        return change(_settings.startInput, _start);
    if (_trip.changeAt)
        return change(_settings.tripInput, _trip);
    return std::nullopt;
}

void OvercurrentRelay::acceptChange()
{
    const auto next = getNextChange();
    if (!next)
        return;
    auto& contact = next->input == _settings.startInput ? _start : _trip;
    contact.isClosed = next->isClosed;
    contact.changeAt.reset();
}

double OvercurrentRelay::_draw(double least, double most)
{
    // Not the standard distributions: their results are not the same with every library.
    const double share = static_cast<double>(_random()) / static_cast<double>(std::mt19937::max());
    return least + share * (most - least);
}

OvercurrentRelay::Time OvercurrentRelay::_delay(double milliseconds)
{
    return toDeviceTime((milliseconds + _draw(-jitter, jitter)) / 1000.0);
}

} // namespace KesDriver
