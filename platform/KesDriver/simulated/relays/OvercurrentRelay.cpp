#include <KesDriver/simulated/relays/OvercurrentRelay.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <complex>
#include <numbers>

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
    case Curve::Table:
        break;
    }
    return {0.14, 0.02};
}

using Stage = OvercurrentRelay::Stage;
using Complex = std::complex<double>;

Complex toComplex(const Phasor& phasor)
{
    return std::polar(phasor.magnitude, phasor.degrees * std::numbers::pi / 180.0);
}

Complex sumOf(const std::array<Complex, 3>& phases)
{
    return phases[0] + phases[1] + phases[2];
}

/// What the relay's inputs carry.
struct Inputs {
    std::array<Complex, 3> currents{};
    Complex residual;
    std::array<Complex, 3> voltages{};
};

Inputs connect(const OutputState& outputs, OvercurrentRelay::Connection connection)
{
    using Connection = OvercurrentRelay::Connection;
    Inputs inputs;
    for (std::size_t i = 0; i < inputs.currents.size(); ++i) {
        inputs.currents[i] = toComplex(outputs.currents[i]);
        inputs.voltages[i] = toComplex(outputs.voltages[i]);
    }
    inputs.residual = sumOf(inputs.currents);
    if (connection == Connection::Phases)
        return inputs;
    inputs.currents = {};
    if (connection != Connection::Residual)
        inputs.currents[static_cast<std::size_t>(connection) - static_cast<std::size_t>(Connection::PhaseA)] =
            inputs.residual;
    return inputs;
}

/// How much of the current counts for a stage with this voltage to compare with.
double directed(Complex current, Complex voltage, const Stage& stage, double characteristicAngle)
{
    constexpr double leastVolts = 1.0;
    if (stage.direction == OvercurrentRelay::Direction::None)
        return std::abs(current);
    if (std::abs(voltage) < leastVolts)
        return 0.0;
    const auto most = voltage * std::polar(1.0, characteristicAngle * std::numbers::pi / 180.0);
    const double along = (current * std::conj(most)).real();
    const bool isForward = stage.direction == OvercurrentRelay::Direction::Forward;
    return (isForward ? along > 0.0 : along < 0.0) ? std::abs(current) : 0.0;
}

double largestPhase(const Inputs& inputs, const Stage& stage, double characteristicAngle)
{
    double largest = 0.0;
    for (std::size_t i = 0; i < inputs.currents.size(); ++i) {
        // A quarter of a turn behind the phase's own voltage.
        const auto across = inputs.voltages[(i + 1) % 3] - inputs.voltages[(i + 2) % 3];
        largest = std::max(
            largest, directed(inputs.currents[i], across * Complex(0.0, 1.0), stage, characteristicAngle));
    }
    return largest;
}

std::optional<double> fromTable(const Stage& stage, double multiple)
{
    const auto& table = stage.table;
    if (table.empty() || multiple < table.front().first)
        return std::nullopt;
    for (std::size_t i = 1; i < table.size(); ++i)
        if (multiple < table[i].first) {
            const auto& [from, first] = table[i - 1];
            const auto& [to, last] = table[i];
            const double slope = std::log(last / first) / std::log(to / from);
            return first * std::pow(multiple / from, slope);
        }
    return table.back().second;
}

/// The time in seconds in which the stage operates at a multiple of its setting; none when it does not. Not
/// the characteristic with which a test program judges a relay: sharing that would hide a fault in it.
std::optional<double> getOperateTime(const Stage& stage, double multiple)
{
    constexpr double endOfDependentTime = 20.0;
    if (!(multiple > 1.0))
        return std::nullopt;
    if (stage.curve == OvercurrentRelay::Curve::DefiniteTime)
        return stage.definiteTime;
    if (stage.curve == OvercurrentRelay::Curve::Table)
        return fromTable(stage, multiple);
    const auto [k, a, c] = getConstants(stage.curve);
    const double excess = std::expm1(a * std::log(std::min(multiple, endOfDependentTime)));
    const double time = stage.timeMultiplier * (k / excess + c);
    return std::isfinite(time) ? std::optional(time) : std::nullopt;
}

} // namespace

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
    _elements = {};
    _start = {};
    _trip = {};
}

bool OvercurrentRelay::_isPickedUp() const
{
    return std::any_of(_elements.begin(), _elements.end(),
                       [](const Element& element) { return element.isPickedUp; });
}

void OvercurrentRelay::applyOutputs(const OutputState& outputs, Time time)
{
    _advance(time);
    const bool wasPickedUp = _isPickedUp();
    _measure(outputs);
    if (!wasPickedUp && _isPickedUp()) {
        _start.move(true, _time + _delay(closeTime));
        _tripDelay = _delay(closeTime);
    } else if (wasPickedUp && !_isPickedUp()) {
        _start.move(false, _time + _delay(openTime));
        _trip.move(false, _time + _delay(openTime));
    }
    _predictTrip();
}

void OvercurrentRelay::_measure(const OutputState& outputs)
{
    const auto inputs = connect(outputs, _settings.connection);
    const double angle = _settings.characteristicAngle;
    for (std::size_t i = 0; i < stageCount; ++i) {
        const auto& stage = _settings.stages[i];
        auto& element = _elements[i];
        const double seen = i == residualStage
                                ? directed(inputs.residual, -sumOf(inputs.voltages), stage, angle)
                                : largestPhase(inputs, stage, angle);
        element.multiple = stage.isUsed ? seen / (stage.settingCurrent * (1.0 + _currentError)) : 0.0;
        if (element.isPickedUp ? element.multiple < dropOffRatio : element.multiple > 1.0) {
            element.isPickedUp = !element.isPickedUp;
            element.travelled = 0.0;
        }
    }
}

void OvercurrentRelay::_advance(Time time)
{
    const double seconds = std::chrono::duration<double>(time - _time).count();
    for (std::size_t i = 0; i < stageCount; ++i) {
        auto& element = _elements[i];
        const auto full = getOperateTime(_settings.stages[i], element.multiple);
        if (element.isPickedUp && full)
            element.travelled += seconds / (*full * (1.0 + _timeError));
    }
    _time = time;
}

void OvercurrentRelay::_predictTrip()
{
    // Once a measuring element has operated, the contact is on its way whatever the current does above
    // drop-off.
    const bool hasOperated = std::any_of(_elements.begin(), _elements.end(),
                                         [](const Element& element) { return element.travelled >= 1.0; });
    if (!_isPickedUp() || _trip.isClosed || (_trip.changeAt && hasOperated))
        return;
    std::optional<double> shortest;
    for (std::size_t i = 0; i < stageCount; ++i) {
        const auto& element = _elements[i];
        const auto full = getOperateTime(_settings.stages[i], element.multiple);
        if (!element.isPickedUp || !full)
            continue;
        const double remaining = std::max(0.0, 1.0 - element.travelled) * *full * (1.0 + _timeError);
        shortest = std::min(remaining, shortest.value_or(remaining));
    }
    if (shortest)
        _trip.move(true, _time + toDeviceTime(*shortest) + _tripDelay);
    else
        _trip.changeAt.reset();
}

std::optional<InputEvent> OvercurrentRelay::getNextChange() const
{
    const auto change = [](unsigned input, const RelayContact& contact) {
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
