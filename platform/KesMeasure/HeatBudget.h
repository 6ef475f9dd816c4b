#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/Outputs.h>
#include <KesMeasure/Withstand.h>

#include <optional>

namespace KesMeasure {

/// How warm the current input of a relay is: a share of what it can store, from 0 (cold) to 1 (full). A
/// value. Any thread, one at a time.
///
/// The heat rises with the square of the current above the continuous one, and falls in the same way below
/// it, down to cold. What fills the store is the I²t of the ten-second current; above that current it goes
/// over to the I²t of the one-second current. The largest of the three currents of an
/// output counts, or their sum, which flows through the residual input and through one that several outputs
/// feed.
class KES_EXPORT HeatBudget {
public:
    explicit HeatBudget(const Withstand& withstand);

    double getShare() const { return _share; }

    /// As warm as another one, some seconds without current later.
    void follow(const HeatBudget& former, double seconds);
    /// The current flows for a time in seconds.
    void add(double amperes, double seconds);
    /// The sequence runs, each step for its whole time.
    void add(const KesDriver::OutputSequence& sequence);
    /// The step runs for that time.
    void add(const KesDriver::OutputStep& step, KesDriver::DeviceTime time);

    /// The largest share while the sequence runs with each step for its whole time.
    double getPeak(const KesDriver::OutputSequence& sequence) const;
    /// The seconds without current after which the sequence does not fill the store; 0 when it may run at
    /// once, nothing when it fills even that of a cold input.
    std::optional<double> getRestBefore(const KesDriver::OutputSequence& sequence) const;

private:
    double _getCapacity(double multiple) const;
    double _getCooling() const;

    Withstand _withstand;
    double _share = 0.0;
};

} // namespace KesMeasure
