#pragma once

namespace KesMeasure {

/// How one measurement ended. A value, as all here.
enum class MeasureState {
    /// The contact did what was waited for.
    Measured,
    /// It did not, within the time-out or the ramp.
    NoOperation,
    /// It had done so before the quantity was there: the wiring or the relay is not as it should be.
    ContactEarly,
    /// The contacts did not open before it: the quantity was not put out.
    NotReset,
    /// Of a drop-off: the contact closed, and did not open again within the ramp.
    NoDropOff
};

/// How far a test has come.
enum class RunEnd {
    Running,
    Complete,
    Stopped,
    Fault,
    /// At a measurement after which the test must not continue: the relay did not operate as expected.
    Ended
};

/// What kind of device made results. Unknown when the file that held them was damaged there.
enum class Origin { Device, Simulated, Unknown };

/// What a test has shown.
enum class Verdict {
    /// No test yet, or one that is under way.
    None,
    Passed,
    Failed,
    Stopped,
    Fault
};

} // namespace KesMeasure
