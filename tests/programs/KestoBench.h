#pragma once

#include <KesDevice/Kesto.h>
#include <KesDriver/simulated/SimulatedNetwork.h>

#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace KesTest {

/// A simulated device on a bench of its own, and the program's side of it.
struct KestoBench {
    explicit KestoBench(double speed) { EXPECT_TRUE(device->setSpeed(speed)); }

    /// Wired to the object, the device goes to its working mode.
    void begin(std::shared_ptr<KesDriver::ISimulatedTestObject> object)
    {
        device->connectTestObject(std::move(object));
        EXPECT_TRUE(kesto->connect());
        EXPECT_TRUE(kesto->startWorkingMode());
    }

    const std::shared_ptr<KesDriver::SimulatedKesto> device =
        std::make_shared<KesDriver::SimulatedKesto>(KesDriver::KestoIdentifer(3, 7));
    KesDriver::SimulatedNetwork network;
    const std::shared_ptr<KesDevice::Kesto> kesto = [this] {
        const KesDevice::Kesto::Address address({10, 0, 0, 1});
        network.add(address, device);
        return KesDevice::Kesto::create(address, network.createLink(address));
    }();
};

} // namespace KesTest
