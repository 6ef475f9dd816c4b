#include <KesMeasure/HeatBudget.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <complex>
#include <numbers>
#include <numeric>

namespace KesMeasure {

namespace {

double square(double value)
{
    return value * value;
}

/// Of the three and their sum.
double largestCurrent(const std::array<KesDriver::Phasor, 3>& currents)
{
    std::complex<double> sum;
    double largest = 0.0;
    for (const auto& [magnitude, degrees] : currents) {
        sum += std::polar(magnitude, degrees * std::numbers::pi / 180.0);
        largest = std::max(largest, magnitude);
    }
    return std::max(largest, std::abs(sum));
}

double largestCurrent(const KesDriver::OutputStep& step)
{
    const auto end = KesDriver::follow(step.outputs, step.ramp, step.duration);
    return std::max(largestCurrent(step.outputs.currents), largestCurrent(end.currents));
}

} // namespace

HeatBudget::HeatBudget(const Withstand& withstand) : _withstand(withstand) {}

/// In seconds times the square of the nominal current.
double HeatBudget::_getCapacity(double multiple) const
{
    const auto& [nominal, continuous, ten, one] = _withstand;
    const double ofTen = (square(ten) - square(continuous)) * 10.0;
    const double ofOne = square(one) - square(continuous);
    return std::lerp(ofTen, ofOne, std::clamp((multiple - ten) / (one - ten), 0.0, 1.0));
}

/// The share lost in a second without current, counted cautiously.
double HeatBudget::_getCooling() const
{
    return square(_withstand.continuous) /
           std::max(_getCapacity(_withstand.tenSeconds), _getCapacity(_withstand.oneSecond));
}

void HeatBudget::follow(const HeatBudget& former, double seconds)
{
    _share = former._share;
    add(0.0, seconds);
}

void HeatBudget::add(double amperes, double seconds)
{
    const double multiple = amperes / _withstand.nominalAmperes;
    const double excess = square(multiple) - square(_withstand.continuous);
    const double rate = excess > 0.0 ? excess / _getCapacity(multiple)
                                     : excess / square(_withstand.continuous) * _getCooling();
    _share = std::max(0.0, _share + rate * seconds);
}

void HeatBudget::add(const KesDriver::OutputStep& step, KesDriver::DeviceTime time)
{
    add(largestCurrent(step), KesDriver::toSeconds(time));
}

void HeatBudget::add(const KesDriver::OutputSequence& sequence)
{
    for (const auto& step : sequence)
        add(step, step.duration);
}

double HeatBudget::getPeak(const KesDriver::OutputSequence& sequence) const
{
    HeatBudget copy = *this;
    double peak = _share;
    for (const auto& step : sequence) {
        copy.add(step, step.duration);
        peak = std::max(peak, copy._share);
    }
    return peak;
}

std::optional<double> HeatBudget::getRestBefore(const KesDriver::OutputSequence& sequence) const
{
    const auto fits = [&](double share) {
        HeatBudget budget(_withstand);
        budget._share = share;
        return budget.getPeak(sequence) <= 1.0;
    };
    if (fits(_share))
        return 0.0;
    if (!fits(0.0))
        return std::nullopt;
    // The share at which it just fits; the lower end always does.
    double low = 0.0;
    double high = _share;
    for (int i = 0; i < 50; ++i) {
        const double middle = std::midpoint(low, high);
        (fits(middle) ? low : high) = middle;
    }
    return (_share - low) / _getCooling();
}

} // namespace KesMeasure
