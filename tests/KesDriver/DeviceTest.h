#pragma once

#include "RecordingReceiver.h"
#include "support/WaitUntil.h"

#include <KesDriver/simulated/SimulatedNetwork.h>

#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace KesTest {

inline KesDriver::OutputState amperes(double value)
{
    KesDriver::OutputState outputs;
    outputs.currents[0].magnitude = value;
    return outputs;
}

/// A simulated device, a link to it and somebody who writes down what it reports.
class DeviceTest : public testing::Test {
protected:
    explicit DeviceTest(const KesDriver::OutputLimits& limits = {})
        : device(std::make_shared<KesDriver::SimulatedKesto>(KesDriver::KestoIdentifer(3, 17), limits)),
          link(network->createLink(address))
    {
        network->add(address, device);
        link->setReceiver(receiver);
    }

    void start()
    {
        ASSERT_TRUE(link->connect(connection));
        ASSERT_TRUE(link->startWorkingMode());
    }
    /// What ends with a connection ends when the device sees the end; at once, but not before the link's call
    /// returns.
    bool isSoonOff()
    {
        return waitUntil(
            [this] { return !device->isWorking() && device->getOutputs() == KesDriver::OutputState{}; });
    }
    /// The last user of the device goes.
    void removeDevice()
    {
        network->remove(address);
        device.reset();
    }
    /// What the link says when the device refuses.
    static std::string refusal(const std::string& text) { return "KESTO-3 No. 00017 (10.0.0.1): " + text; }
    /// The lines of a sequence up to its end.
    std::vector<std::string> run(const KesDriver::OutputSequence& sequence)
    {
        receiver->clear();
        EXPECT_EQ(message(link->runSequence(sequence)), "");
        EXPECT_TRUE(receiver->waitFor("finished"));
        auto lines = receiver->getLines();
        for (std::size_t i = 0; i < lines.size(); ++i)
            if (lines[i].starts_with("finished"))
                lines.resize(i + 1);
        return lines;
    }

    static constexpr KesDriver::NetAddress address{KesDriver::NetAddress::Bytes{10, 0, 0, 1}};
    const std::shared_ptr<KesDriver::SimulatedNetwork> network =
        std::make_shared<KesDriver::SimulatedNetwork>();
    std::shared_ptr<KesDriver::SimulatedKesto> device;
    std::shared_ptr<RecordingReceiver> receiver = std::make_shared<RecordingReceiver>();
    std::unique_ptr<KesDriver::IKestoLink> link;
    KesDriver::ConnectionNumber connection = 0;
};

} // namespace KesTest
