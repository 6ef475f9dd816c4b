#pragma once

#include <VoltageFrequency/data/Settings.h>
#include <VoltageFrequency/steps/Steps.h>

#include <KesMeasure/ITestDefinition.h>

namespace VoltageFrequency {

/// The test of a voltage and frequency relay: of each stage in use pick-up, drop-off and operate time.
/// Any thread.
///
/// Bands: a value lies within its tolerance of the setting, a time within the larger one of its two. A ramp
/// finds a value late by the way it goes while the relay measures and closes its contact; 0.15 s of it are
/// permitted on top, and one step where a rate is sought in steps.
class VoltageFrequencyTest : public KesMeasure::ITestDefinition {
public:
    explicit VoltageFrequencyTest(const Settings& settings) : _settings(settings) {}

    std::vector<KesMeasure::TextLine> describe() const override;
    /// Refuses a test without a stage, one input for both contacts, a stage that would pick up near the
    /// nominal quantities or not drop off there, and a rate of change whose measurement would reach a
    /// frequency stage.
    Kes::Result check() const override;
    KesMeasure::MeasurementPlan createPlan() const override;
    unsigned getRepetitions() const override { return _settings.repetitions; }
    std::shared_ptr<KesDriver::ISimulatedTestObject> makeTestObject() const override;

private:
    Kes::Result _checkStage(StageKind kind) const;
    /// How far the frequency goes while a rate is put out must leave room to the frequency stages in that
    /// direction.
    Kes::Result _checkRate() const;
    using ReadRamp = KesMeasure::Reading (*)(const Settings& settings, const Steps::Ramp& ramp,
                                             const KesMeasure::SequenceRecord& record);
    using RateSequence = KesDriver::OutputSequence (*)(const Settings& settings, double hertzPerSecond);
    using ReadRate = std::optional<KesMeasure::Reading> (*)(const Settings& settings,
                                                            const KesMeasure::SequenceRecord& record);
    /// The value is where the ramp was when the contact changed.
    KesMeasure::PlannedMeasurement _planRamp(StageKind kind, const char* quantity, double expected,
                                             const Steps::Ramp& ramp,
                                             const KesDriver::OutputSequence& sequence,
                                             ReadRamp readRamp) const;
    /// Rates of change cannot go as a ramp: each rate is put out for itself, step by step, until the relay
    /// changes.
    KesMeasure::PlannedMeasurement _planRates(const char* quantity, double expected, double step,
                                              RateSequence sequenceOf, ReadRate readRate) const;
    /// From the step beyond the setting to the trip contact, in seconds.
    KesMeasure::PlannedMeasurement _planOperateTime(StageKind kind) const;

    const Settings _settings;
};

} // namespace VoltageFrequency
