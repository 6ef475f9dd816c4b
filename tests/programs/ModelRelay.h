#pragma once

#include <Overcurrent/data/RelaySettings.h>
#include <Overcurrent/data/TestPlan.h>

#include <KesDriver/simulated/ISimulatedTestObject.h>

#include <array>
#include <random>
#include <vector>

/// A relay that shares nothing with the code under test, not even a formula: its times are calculated from
/// the standards' tables in another way.
struct ModelRelay {
    Overcurrent::RelaySettings settings;
    /// The current that it measures, as a share of the true one.
    double currentFactor = 1.0;
    /// How much of the time tolerance it uses up, from -1 to 1; beyond: faulty.
    double timeShare = 0.0;
    double dropOffRatio = 0.95;
    /// In seconds: of its contacts, of their bouncing, until they are open, and until its disk is back.
    double contactTime = 0.01;
    double bounce = 0.0;
    double contactReset = 0.05;
    double reset = 0.1;
    bool neverTrips = false;

    /// A relay that keeps what its settings promise; often at the very edge.
    static ModelRelay healthy(std::mt19937& random);
    /// One that breaks it in one way, by a good deal more than the plan can tell apart.
    static ModelRelay faulty(std::mt19937& random, const Overcurrent::TestPlan& plan);

    /// In seconds, from the beginning of the current to the closing of the trip contact.
    double getTime(double multiple) const;
    /// As a multiple of the setting.
    double getPickUp() const { return 1.0 / currentFactor; }
    double getDropOff() const { return getPickUp() * dropOffRatio; }
};

/// A test plan for any model relay.
Overcurrent::TestPlan modelPlan();

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

    void _move(Contact& contact, bool isClosed, double at);
    void _advance(double now);

    const ModelRelay _relay;
    /// Trip and start.
    std::array<Contact, 2> _contacts;
    double _now = 0.0;
    double _multiple = 0.0;
    bool _isPickedUp = false;
    /// Of the disk's way, from 0 to 1.
    double _travelled = 0.0;
};
