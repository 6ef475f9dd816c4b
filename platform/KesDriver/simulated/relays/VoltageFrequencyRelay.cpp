#include <KesDriver/simulated/relays/VoltageFrequencyRelay.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <complex>
#include <numbers>

namespace KesDriver {

namespace {

using namespace std::chrono_literals;
using Seconds = std::chrono::duration<double>;

constexpr std::mt19937::result_type seed = 20240311;

/// What the elements need to see a quantity.
constexpr DeviceTime measuringTimes[] = {25ms, 25ms, 60ms, 60ms, 80ms};

/// Outputs on a ramp come each millisecond; when they come no more, the frequency stands.
constexpr DeviceTime rampGap = 2ms;
/// A faster change is a jump.
constexpr double fastestRate = 50.0;
constexpr double blockingShare = 0.2;

std::complex<double> toComplex(const Phasor& phasor)
{
    return std::polar(phasor.magnitude, phasor.degrees * std::numbers::pi / 180.0);
}

} // namespace

VoltageFrequencyRelay::VoltageFrequencyRelay(const Settings& settings) : _settings(settings)
{
    reset(Time(0));
}

void VoltageFrequencyRelay::reset(Time time)
{
    _random.seed(seed);
    _voltageError = _draw(0.003, 0.006);
    _hertzError = _draw(-0.006, -0.003);
    _rateError = _draw(0.01, 0.03);
    _timeError = _draw(0.001, 0.004);
    _closeTime = toDeviceTime(_draw(0.007, 0.011));
    _openTime = toDeviceTime(_draw(0.012, 0.016));
    _time = time;
    _hertz.reset();
    _hertzPerSecond = 0.0;
    _elements = {};
}

void VoltageFrequencyRelay::applyOutputs(const OutputState& outputs, Time time)
{
    // Changes that no input shows are over by now.
    (void)_play(_elements, time);
    const auto quantities = _measure(outputs, time);
    for (std::size_t i = 0; i < Count; ++i) {
        const auto kind = static_cast<Kind>(i);
        if (_settings.stages[i].isUsed)
            _follow(kind, _isBeyond(kind, quantities, _elements[i].isBeyond), time);
    }
    _hertz = quantities.hertz;
    _hertzPerSecond = quantities.hertzPerSecond;
    _time = time;
}

VoltageFrequencyRelay::Quantities VoltageFrequencyRelay::_measure(const OutputState& outputs, Time time) const
{
    const auto& phases = outputs.voltages;
    const auto between = [&](std::size_t one, std::size_t other) {
        return std::abs(toComplex(phases[one]) - toComplex(phases[other]));
    };
    const auto [lowest, highest] = std::minmax({between(0, 1), between(1, 2), between(2, 0)});
    Quantities quantities{lowest, highest, std::nullopt, 0.0};
    if (lowest < blockingShare * _settings.nominalVoltage)
        return quantities;
    quantities.hertz = outputs.voltageHertz;
    const double gap = Seconds(time - _time).count();
    // Where two steps meet, the same moment comes twice.
    if (_hertz == quantities.hertz && time == _time)
        quantities.hertzPerSecond = _hertzPerSecond;
    else if (_hertz && gap > 0.0 && time - _time <= rampGap)
        quantities.hertzPerSecond = (outputs.voltageHertz - *_hertz) / gap;
    if (std::fabs(quantities.hertzPerSecond) > fastestRate)
        quantities.hertzPerSecond = 0.0;
    return quantities;
}

bool VoltageFrequencyRelay::_isBeyond(Kind kind, const Quantities& quantities, bool wasBeyond) const
{
    const auto& stage = _settings.stages[kind];
    const double share = wasBeyond ? stage.dropOff : 1.0;
    const double volts = stage.setting * (1.0 + _voltageError) * share;
    const double back = wasBeyond ? stage.dropOff : 0.0;
    const double hertz = stage.setting + _hertzError;
    switch (kind) {
    case Undervoltage:
        return quantities.lowestVolts < volts;
    case Overvoltage:
        return quantities.highestVolts > volts;
    case Underfrequency:
        return quantities.hertz && *quantities.hertz < hertz + back;
    case Overfrequency:
        return quantities.hertz && *quantities.hertz > hertz - back;
    case FrequencyRate: {
        const double rate = stage.setting * (1.0 + _rateError) * share;
        return rate < 0.0 ? quantities.hertzPerSecond < rate : quantities.hertzPerSecond > rate;
    }
    case Count:
        break;
    }
    return false;
}

VoltageFrequencyRelay::Time VoltageFrequencyRelay::_operateTime(Kind kind) const
{
    return std::max(toDeviceTime(_settings.stages[kind].delay * (1.0 + _timeError)), measuringTimes[kind]);
}

void VoltageFrequencyRelay::_follow(Kind kind, bool isBeyond, Time time)
{
    auto& element = _elements[kind];
    const bool hasChanged = isBeyond != element.isBeyond;
    element.isBeyond = isBeyond;
    if (hasChanged)
        element.since = time;
    if (kind == FrequencyRate) {
        _followRate(element, isBeyond, time);
    } else if (hasChanged && isBeyond) {
        element.start.move(true, time + measuringTimes[kind] + _closeTime);
        element.trip.move(true, time + _operateTime(kind) + _closeTime);
    } else if (hasChanged) {
        element.start.move(false, time + measuringTimes[kind] + _openTime);
        element.trip.move(false, time + measuringTimes[kind] + _openTime);
    }
}

/// Outputs that stand have no rate: a contact goes its way only as long as the ramp does, and one that is
/// closed opens soon, unless the ramp continues.
void VoltageFrequencyRelay::_followRate(Element& element, bool isBeyond, Time time)
{
    const auto follow = [&](RelayContact& contact, Time operateTime) {
        if (contact.isClosed)
            contact.changeAt = isBeyond || !contact.changeAt ? time + rampGap + _openTime : *contact.changeAt;
        else if (!isBeyond)
            contact.changeAt.reset();
        else if (!contact.changeAt && time - element.since >= operateTime)
            contact.changeAt = time + _closeTime;
    };
    follow(element.start, measuringTimes[FrequencyRate]);
    follow(element.trip, _operateTime(FrequencyRate));
}

RelayContact* VoltageFrequencyRelay::_findNext(Elements& elements) const
{
    RelayContact* next = nullptr;
    for (auto& element : elements)
        for (auto* contact : {&element.start, &element.trip})
            if (contact->changeAt && (!next || *contact->changeAt < *next->changeAt))
                next = contact;
    return next;
}

unsigned VoltageFrequencyRelay::_inputOf(const Elements& elements, const RelayContact& contact) const
{
    const bool isTrip = std::any_of(elements.begin(), elements.end(),
                                    [&](const Element& element) { return &element.trip == &contact; });
    return isTrip ? _settings.tripInput : _settings.startInput;
}

bool VoltageFrequencyRelay::_isClosed(const Elements& elements, unsigned input) const
{
    return std::any_of(elements.begin(), elements.end(), [&](const Element& element) {
        return (element.trip.isClosed && _settings.tripInput == input) ||
               (element.start.isClosed && _settings.startInput == input);
    });
}

void VoltageFrequencyRelay::_applyNext(Elements& elements, RelayContact& contact) const
{
    const Time at = *contact.changeAt;
    contact.isClosed = !contact.isClosed;
    contact.changeAt.reset();
    const auto& rate = elements[FrequencyRate];
    if (contact.isClosed && (&contact == &rate.start || &contact == &rate.trip))
        contact.changeAt = at + rampGap + _openTime;
}

std::optional<InputEvent> VoltageFrequencyRelay::_play(Elements& elements, Time until) const
{
    for (auto* next = _findNext(elements); next && *next->changeAt < until; next = _findNext(elements)) {
        const Time at = *next->changeAt;
        const unsigned input = _inputOf(elements, *next);
        const bool wasClosed = _isClosed(elements, input);
        _applyNext(elements, *next);
        if (const bool isClosed = _isClosed(elements, input); isClosed != wasClosed)
            return InputEvent{input, isClosed, at, std::nullopt};
    }
    return std::nullopt;
}

std::optional<InputEvent> VoltageFrequencyRelay::getNextChange() const
{
    auto elements = _elements;
    return _play(elements, Time::max());
}

void VoltageFrequencyRelay::acceptChange()
{
    (void)_play(_elements, Time::max());
}

double VoltageFrequencyRelay::_draw(double least, double most)
{
    // Not the standard distributions: their results are not the same with every library.
    const double share = static_cast<double>(_random()) / static_cast<double>(std::mt19937::max());
    return least + share * (most - least);
}

} // namespace KesDriver
