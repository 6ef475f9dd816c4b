#pragma once

#include <KesDriver/Report.h>
#include <KesDriver/simulated/ISimulatedTestObject.h>
#include <KesDriver/simulated/detail/SimulatedEndWatch.h>
#include <KesDriver/simulated/detail/SimulatedInputs.h>
#include <KesDriver/simulated/detail/SimulatedLoad.h>
#include <KesDriver/simulated/detail/SimulatedWave.h>

#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

namespace KesDriver {

/// Channels have protected themselves; the outputs are off.
struct SimulatedTrip {
    SimulatedLoad::Channels overloaded{};
    SimulatedLoad::Channels overheated{};
};

/// Binary output 1 has changed.
struct SimulatedStartSignal {
    bool isClosed = false;
    DeviceTime time{0};
};

/// The output and input stage of a simulated device: amplifiers, binary outputs, the sequence that runs on
/// them, the test object wired to them, and the binary inputs. It knows device time only, and never waits:
/// its owner asks for the time of the next event and lets it happen. So what it reports depends on nothing
/// but the times given.
///
/// Times that are given must not go back; one that does counts as the last one given. Not synchronised.
class SimulatedOutput {
public:
    using Report = std::variant<InputEvent, StepEvent, SequenceEvent, SimulatedTrip, SimulatedStartSignal>;

    explicit SimulatedOutput(const OutputLimits& limits) : _inputs(limits.binaryInputs), _load(limits) {}

    bool isWorking() const { return _working; }
    bool isArmed() const { return _state == State::Armed; }
    /// Also one that waits for its start.
    bool hasSequence() const { return _state != State::Idle; }
    const OutputState& getOutputs() const { return _outputs; }
    /// The closed inputs; bit 0 is input 1.
    std::uint32_t getInputs() const { return _inputs.getMask(); }
    /// The last time given, or of the last thing that has happened.
    DeviceTime getTime() const { return _time; }
    /// When all currents and voltages became zero last; 0 when they never were anything else.
    DeviceTime getZeroTime() const { return _zeroTime; }
    /// How often a current or a voltage has risen from zero while all others were zero.
    unsigned getEnergisings() const { return _energisings; }

    void connectTestObject(std::shared_ptr<ISimulatedTestObject> testObject, DeviceTime time);
    /// In ohms, at each of the current outputs.
    void setBurden(double ohms, DeviceTime time);
    /// Changes the wire at an input then.
    void setInput(unsigned input, bool isClosed, DeviceTime time);
    /// Has the wire at an input change at a time to come.
    void scheduleInput(unsigned input, bool isClosed, DeviceTime time);

    /// Does nothing when the amplifiers are on.
    void startWorkingMode(DeviceTime time);
    void stopWorkingMode(DeviceTime time);
    /// These three only in working mode, without a sequence.
    void setOutputs(const OutputState& outputs, DeviceTime time);
    void runSequence(const OutputSequence& sequence, DeviceTime time);
    void armSequence(const OutputSequence& sequence, DeviceTime time);
    /// The armed sequence begins then, or when the input closes. The last call counts.
    void startArmedAt(DeviceTime start);
    void startArmedOn(unsigned input);
    /// A sequence ends incomplete; all outputs are zero.
    void stopOutputs(DeviceTime time);

    /// When the next thing happens by itself; never before a time given earlier.
    std::optional<DeviceTime> getNextTime() const;
    /// Lets it happen.
    void processNext();

    /// What has happened since the last call, in order.
    std::vector<Report> takeReports() { return std::exchange(_reports, {}); }
    bool hasReports() const { return !_reports.empty(); }

private:
    /// Waiting: for the moment at which the step may begin.
    enum class State { Idle, Armed, Waiting, Running };
    struct Event {
        DeviceTime time;
        void (SimulatedOutput::*happen)();
    };
    struct WireChange {
        unsigned input;
        bool isClosed;
    };

    std::optional<Event> _findNext() const;
    std::optional<DeviceTime> _getNextTick() const;
    void _touch(DeviceTime time);

    void _put(const OutputState& outputs);
    void _apply(const OutputState& outputs, double hertzPerSecond = 0.0);
    void _trip(const SimulatedTrip& trip);
    void _checkLoad();
    void _overheat();

    void _resetTestObject();
    void _acceptChange();
    void _acceptWire();
    void _setContact(SimulatedInputs::Contact contact, unsigned input, bool isClosed);
    std::optional<std::size_t> _getStepNumber() const;

    void _take(const OutputSequence& sequence);
    void _startArmed();
    void _awaitStep();
    void _beginStepsDue();
    void _beginStep();
    void _tick();
    void _endStep();
    void _endSequence(bool isComplete);

    std::shared_ptr<ISimulatedTestObject> _testObject;
    SimulatedInputs _inputs;
    std::multimap<DeviceTime, WireChange> _wireChanges;
    SimulatedLoad _load;
    SimulatedWave _voltageWave;
    OutputState _outputs;
    unsigned _energisings = 0;
    DeviceTime _zeroTime{0};

    State _state = State::Idle;
    OutputSequence _sequence;
    std::optional<DeviceTime> _startTime;
    std::optional<unsigned> _startInput;
    std::size_t _step = 0;
    DeviceTime _stepBegin{0};
    DeviceTime _stepEnd{0};
    /// Ticks of the ramp that have been put out.
    DeviceTime::rep _ticks = 0;
    SimulatedEndWatch _endWatch;

    DeviceTime _time{0};
    bool _working = false;
    std::vector<Report> _reports;
};

} // namespace KesDriver
