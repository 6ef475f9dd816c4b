#pragma once

#include <KesDriver/ISimulatedTestObject.h>
#include <KesDriver/Outputs.h>

#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace KesDriver {

/// The output and input stage of a simulated device: amplifiers, the sequence that runs on them, the test
/// object wired to them, and the states of the binary inputs. It knows device time only, and never waits: its
/// owner asks for the time of the next event and lets it happen. So what it reports depends on nothing but
/// the times given.
///
/// Times that are given must not go back; one that does counts as the last one given. Not synchronised.
class SimulatedOutput {
public:
    using Report = std::variant<InputEvent, StepEvent, SequenceEvent>;

    explicit SimulatedOutput(unsigned binaryInputs) : _inputs(binaryInputs, false) {}

    bool isWorking() const { return _working; }
    bool isSequenceRunning() const { return !_sequence.empty(); }
    const OutputState& getOutputs() const { return _outputs; }

    void connectTestObject(std::shared_ptr<ISimulatedTestObject> testObject, DeviceTime time);

    /// Does nothing when the amplifiers are on.
    void startWorkingMode(DeviceTime time);
    void stopWorkingMode(DeviceTime time);
    /// Only in working mode, without a running sequence.
    void setOutputs(const OutputState& outputs, DeviceTime time);
    void runSequence(const OutputSequence& sequence, DeviceTime time);
    /// A running sequence ends incomplete; all outputs are zero.
    void stopOutputs(DeviceTime time);

    /// When the next thing happens by itself; never before a time given earlier.
    std::optional<DeviceTime> getNextTime() const;
    /// Lets it happen: a contact change, or the end of a step when no change comes before or with it.
    void processNext();

    /// What has happened since the last call, in order.
    std::vector<Report> takeReports();

private:
    std::optional<InputEvent> _nextChange() const;
    void _touch(DeviceTime time);
    void _apply(const OutputState& outputs);
    void _resetTestObject();
    void _processChange(const InputEvent& change);
    void _setInput(std::size_t index, bool isClosed);
    void _beginStep();
    void _endStep();
    void _endSequence(bool isComplete);
    bool _isEndedByInput(const OutputStep& step) const;

    std::shared_ptr<ISimulatedTestObject> _testObject;
    std::vector<bool> _inputs;
    OutputState _outputs;
    OutputSequence _sequence;
    std::size_t _step = 0;
    DeviceTime _stepEnd{0};
    DeviceTime _time{0};
    bool _working = false;
    std::vector<Report> _reports;
};

} // namespace KesDriver
