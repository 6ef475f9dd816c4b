#pragma once

#include <KesDevice/HardwareManager.h>
#include <KesDriver/simulated/SimulatedNetwork.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace KesTest {

/// A simulated device at an address of the simulated network, and its place in a configuration: all that
/// tests of faults do with a device beyond the bench operations (`device->setSilent(true)`) and the
/// operations of the configuration. Lives longer than the configuration's use of it. Any thread.
class BenchDevice {
public:
    /// KESTO-3 No. 0000n at 10.0.7.n.
    explicit BenchDevice(std::uint8_t number)
        : _address(KesDevice::Kesto::Address::Bytes{10, 0, 7, number}),
          _device(std::make_shared<KesDriver::SimulatedKesto>(KesDriver::KestoIdentifer(3, number)))
    {
        KesDriver::SimulatedNetwork::getEmbedded()->add(_address, _device);
    }
    ~BenchDevice() { KesDriver::SimulatedNetwork::getEmbedded()->remove(_address); }
    BenchDevice(const BenchDevice&) = delete;
    BenchDevice& operator=(const BenchDevice&) = delete;

    KesDriver::SimulatedKesto* operator->() const { return _device.get(); }
    KesDriver::SimulatedKesto& operator*() const { return *_device; }
    std::string getAddress() const { return _address.to_string(); }

    // As the device itself says.

    bool isPuttingOut() const { return _device->getOutputs() != KesDriver::OutputState(); }

    // Through the configuration, once it is part of one.

    void addTo(KesDevice::HardwareManager& hardware)
    {
        (void)hardware.addKesto(_address);
        _kesto = hardware.getKestos().find(_address);
    }
    /// Whether an attempt to connect has begun; identity, supply and state may still be outstanding.
    bool isReached() const { return _kesto->getState() != KesDevice::DeviceState::Absent; }
    /// What the state updater does: connects when needed, and asks.
    bool askState() { return static_cast<bool>(_kesto->updateState()); }
    Kes::Result putOut(double amperes)
    {
        KesDriver::OutputState outputs;
        outputs.currents[0].magnitude = amperes;
        return _kesto->setOutputs(outputs);
    }
    Kes::Result runSequence(const KesDriver::OutputSequence& sequence)
    {
        return _kesto->runSequence(sequence);
    }
    Kes::Connection onStep(std::function<void(const KesDriver::StepEvent&)> slot)
    {
        return _kesto->signalReport.connect([slot = std::move(slot)](const KesDriver::Report& report) {
            if (const auto* step = std::get_if<KesDriver::StepEvent>(&report))
                slot(*step);
        });
    }

private:
    const KesDevice::Kesto::Address _address;
    const std::shared_ptr<KesDriver::SimulatedKesto> _device;
    std::shared_ptr<KesDevice::Kesto> _kesto;
};

} // namespace KesTest
