#pragma once

#include <KesDriver/simulated/ISimulatedTestObject.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <deque>
#include <optional>

namespace KesTest {

/// A relay with one stage, written for the tests alone: its values are exactly what it is told. Trip at input
/// 1, start at input 2.
class StageRelay : public KesDriver::ISimulatedTestObject {
public:
    using Time = KesDriver::DeviceTime;

    struct Values {
        enum class Quantity { Volts, Hertz, HertzPerSecond } quantity = Quantity::Volts;
        /// Picks up below (or above) the one, drops off above (or below) the other.
        bool isUnder = true;
        double pickUp = 0.0;
        double dropOff = 0.0;
        Time startTime{0};
        Time tripTime{0};
        Time resetTime{0};
        /// Each closing is followed by this many openings of 2 ms, 2 ms apart.
        int bounces = 0;
        /// The trip contact closes for 2 ms so long before it operates; 0: it does not.
        Time shakeBefore{0};
        /// How often it misses what it should pick up at.
        int misses = 0;
    };

    explicit StageRelay(const Values& values) : _values(values) {}

    void reset(Time time) override
    {
        _pending.clear();
        _isClosed[0] = _isClosed[1] = _isBeyond = false;
        _time = time;
    }
    void applyOutputs(const KesDriver::OutputState& outputs, Time time) override
    {
        const double value = _measure(outputs, time);
        if (value > 0.0)
            _least = std::min(_least, value);
        const double limit = _isBeyond ? _values.dropOff : _values.pickUp;
        const bool isBeyond = _values.isUnder ? value < limit : value > limit;
        _time = time;
        if (isBeyond == _isBeyond)
            return;
        _isBeyond = isBeyond;
        _pending.clear();
        if (isBeyond && _misses++ < _values.misses)
            return;
        for (const unsigned input : {1u, 2u})
            if (isBeyond)
                _close(input, time + (input == 1 ? _values.tripTime : _values.startTime));
            else if (_isClosed[input - 1])
                _pending.push_back({input, false, time + _values.resetTime, std::nullopt});
        std::sort(_pending.begin(), _pending.end(),
                  [](const auto& one, const auto& other) { return one.time < other.time; });
    }
    /// Of the values above zero that it has seen.
    double getLeast() const { return _least; }
    std::optional<KesDriver::InputEvent> getNextChange() const override
    {
        return _pending.empty() ? std::nullopt : std::optional(_pending.front());
    }
    void acceptChange() override
    {
        _isClosed[_pending.front().input - 1] = _pending.front().isClosed;
        _pending.pop_front();
    }

private:
    double _measure(const KesDriver::OutputState& outputs, Time time)
    {
        if (_values.quantity == Values::Quantity::Volts)
            return outputs.voltages[0].magnitude * std::sqrt(3.0);
        const double last = _hertz;
        _hertz = outputs.voltageHertz;
        if (_values.quantity == Values::Quantity::Hertz)
            return _hertz;
        const double gap = std::chrono::duration<double>(time - _time).count();
        // Two steps meet in one moment, which has no rate of its own.
        if (gap > 0.0)
            _rate = (_hertz - last) / gap;
        return std::fabs(_rate) > 20.0 ? 0.0 : _rate;
    }
    void _close(unsigned input, Time at)
    {
        using namespace std::chrono_literals;
        if (_isClosed[input - 1])
            return;
        if (input == 1 && _values.shakeBefore > Time(0))
            for (const bool isClosed : {true, false})
                _pending.push_back({input, isClosed,
                                    at - _values.shakeBefore + (isClosed ? Time(0) : Time(2ms)),
                                    std::nullopt});
        _pending.push_back({input, true, at, std::nullopt});
        for (int i = 0; i < _values.bounces; ++i) {
            _pending.push_back({input, false, at + 4ms * i + 2ms, std::nullopt});
            _pending.push_back({input, true, at + 4ms * i + 4ms, std::nullopt});
        }
    }

    double _least = 1e9;
    const Values _values;
    bool _isBeyond = false;
    int _misses = 0;
    bool _isClosed[2] = {false, false};
    double _hertz = 50.0;
    double _rate = 0.0;
    Time _time{0};
    std::deque<KesDriver::InputEvent> _pending;
};

} // namespace KesTest
