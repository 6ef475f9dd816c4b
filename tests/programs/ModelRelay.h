#pragma once

#include <Overcurrent/data/RelaySettings.h>
#include <Overcurrent/data/TestPlan.h>

#include <KesDriver/simulated/ISimulatedTestObject.h>

#include <array>
#include <optional>
#include <random>
#include <vector>

/// A relay that shares nothing with the code under test, not even a formula: its times are calculated from
/// the standards' tables in another way, and what its stages see from the outputs themselves. With it comes
/// the plan that it is tested with.
struct ModelRelay {
    /// What is off in a stage.
    struct StageError {
        /// The current that it measures, as a share of the true one.
        double currentFactor = 1.0;
        /// How much of the time tolerance it uses up, from -1 to 1; beyond: faulty.
        double timeShare = 0.0;
        bool neverTrips = false;
        bool isMissing = false;
        bool isInverted = false;
    };

    Overcurrent::RelaySettings settings;
    Overcurrent::TestPlan plan;
    std::array<StageError, Overcurrent::allStages.size()> errors{};
    std::optional<std::size_t> deadPhase;
    double dropOffRatio = 0.95;
    /// In seconds: of its contacts, of their bouncing, until they are open, and until its disk is back.
    double contactTime = 0.01;
    double bounce = 0.0;
    double contactReset = 0.05;
    double reset = 0.1;

    /// A relay of one stage that keeps what its settings promise; often at the very edge.
    static ModelRelay healthy(std::mt19937& random);
    /// One that breaks it in one way, by a good deal more than the plan can tell apart.
    static ModelRelay faulty(std::mt19937& random);
    /// The same with several stages and faults. Of the faulty ones one stage is slow, fast, missing or looks
    /// into the wrong direction, or a phase is dead.
    static ModelRelay healthyStages(std::mt19937& random);
    static ModelRelay faultyStages(std::mt19937& random);

    /// What the stage measures, as a multiple of its setting.
    double getMultiple(std::size_t stage, const KesDriver::OutputState& outputs) const;
    /// In seconds, from the beginning of the outputs to the closing of the trip contact by that stage.
    std::optional<double> getTime(std::size_t stage, const KesDriver::OutputState& outputs) const;
    /// By the fastest one.
    std::optional<double> getTime(const KesDriver::OutputState& outputs) const;
    bool picksUp(const KesDriver::OutputState& outputs) const;
    bool dropsOff(const KesDriver::OutputState& outputs) const;

private:
    /// Whether a point of the plan shows that the relay is faulty.
    bool _isFaultSeen() const;
};

/// The outputs of a point, and those of a ramp at a multiple.
KesDriver::OutputState outputsOf(const ModelRelay& relay, const Overcurrent::PlannedPoint& point);
KesDriver::OutputState outputsOfRamp(const ModelRelay& relay, double multiple);

/// The model on a simulated bench.
class ModelRelayObject : public KesDriver::ISimulatedTestObject {
public:
    explicit ModelRelayObject(const ModelRelay& relay) : _relay(relay) {}

    void reset(KesDriver::DeviceTime time) override;
    void applyOutputs(const KesDriver::OutputState& outputs, KesDriver::DeviceTime time) override;
    std::optional<KesDriver::InputEvent> getNextChange() const override;
    void acceptChange() override;

private:
    /// A contact with its movements to come, the last one first.
    struct Contact {
        bool isClosed = false;
        std::vector<KesDriver::DeviceTime> movements;
    };
    struct Element {
        bool isPickedUp = false;
        /// Of the disk's way, from 0 to 1.
        double travelled = 0.0;
    };

    bool _isPickedUp() const;
    void _measure();
    void _predictTrip();
    void _move(Contact& contact, bool isClosed, double at);
    void _advance(double now);

    const ModelRelay _relay;
    /// Trip and start.
    std::array<Contact, 2> _contacts;
    double _now = 0.0;
    KesDriver::OutputState _outputs;
    std::array<Element, Overcurrent::allStages.size()> _elements{};
};
