#include "TestBench.h"

#include <KesDriver/net/TcpNetwork.h>
#include <KesDriver/simulated/serving/DeviceServer.h>

#include <support/Record.h>

using namespace KesTest;
using KesDevice::DeviceState;

namespace {

using Clock = std::chrono::steady_clock;

constexpr KesDriver::NetAddress servedAddress{KesDriver::NetAddress::Bytes{127, 8, 0, 2}};

/// A device of a configuration that is reached over TCP.
class NetworkDeviceTest : public testing::Test {
protected:
    NetworkDeviceTest()
    {
        EXPECT_EQ(message(server->listen(servedAddress.to_string(), 0)), "");
        kesto =
            Kesto::create(servedAddress, KesDriver::TcpNetwork(server->getPort()).createLink(servedAddress));
        kesto->signalReport.connect([this](const KesDriver::Report& report) {
            if (const auto* end = std::get_if<KesDriver::SequenceEvent>(&report))
                record.write(end->isComplete ? "complete" : "incomplete");
            else if (const auto* step = std::get_if<KesDriver::StepEvent>(&report))
                record.write("step " + std::to_string(step->step));
            else if (std::holds_alternative<KesDriver::ConnectionLost>(report))
                record.write("lost");
        });
        kesto->signalNotice.connect([this](const char* text) { record.write(text); });
    }
    void start()
    {
        ASSERT_EQ(message(kesto->connect()), "");
        ASSERT_EQ(message(kesto->startWorkingMode()), "");
        KesDriver::OutputState outputs;
        outputs.currents[0].magnitude = 2.0;
        ASSERT_EQ(message(kesto->setOutputs(outputs)), "");
    }

    std::shared_ptr<KesDriver::SimulatedKesto> device =
        std::make_shared<KesDriver::SimulatedKesto>(KesDriver::KestoIdentifer(3, 17));
    std::unique_ptr<KesDriver::DeviceServer> server = std::make_unique<KesDriver::DeviceServer>(device);
    Record record;
    std::shared_ptr<Kesto> kesto;
};

TEST_F(NetworkDeviceTest, MeasuresAsAnyOther)
{
    ASSERT_EQ(message(kesto->connect()), "");
    EXPECT_TRUE(kesto->isSimulated());
    EXPECT_EQ(kesto->toDisplayString(), "KESTO-3 No. 00017 (127.8.0.2)");
    ASSERT_EQ(message(kesto->startWorkingMode()), "");
    for (int round = 0; round < 20; ++round) {
        ASSERT_EQ(message(kesto->runSequence({{{}, 1ms}, {{}, 1ms}})), "");
        ASSERT_TRUE(waitUntil([this] { return record.has("complete"); }));
        EXPECT_THAT(record.take(), ElementsAre("step 0", "step 1", "complete"));
    }
    EXPECT_EQ(message(kesto->stopWorkingMode()), "");
    kesto->disconnect();
    EXPECT_EQ(message(kesto->connect()), "") << "at once";
}

TEST_F(NetworkDeviceTest, NonsenseSwitchesOff)
{
    start();
    const auto before = Clock::now();
    device->setNonsense(true);
    ASSERT_TRUE(waitUntil([this] { return !device->isWorking(); }));
    EXPECT_LT(Clock::now() - before, 3s);
    ASSERT_TRUE(waitUntil([this] { return kesto->getState() == DeviceState::Faulty; }));
    const auto reason = KesTest::nonsenseOf("KESTO-3 No. 00017 (127.8.0.2)");
    EXPECT_EQ(kesto->getOperationError(), reason);
    ASSERT_TRUE(waitUntil([&] { return record.has(reason); }));
    EXPECT_THAT(record.take(), ElementsAre(reason));
    EXPECT_NE(message(kesto->connect()), "");
    device->setNonsense(false);
    EXPECT_EQ(message(kesto->connect()), "");
}

TEST_F(NetworkDeviceTest, LossIsToldOnce)
{
    start();
    device->simulateConnectionLoss();
    ASSERT_TRUE(waitUntil([this] { return record.has("lost"); }));
    EXPECT_EQ(kesto->getState(), DeviceState::Lost);
    EXPECT_FALSE(device->isWorking());
    EXPECT_THAT(record.take(), ElementsAre("lost"));
    start();
    server.reset();
    ASSERT_TRUE(waitUntil([this] { return record.has("lost"); }));
    EXPECT_FALSE(device->isWorking());
    EXPECT_EQ(message(kesto->connect()),
              "KESTO-3 No. 00017 (127.8.0.2) cannot be reached: there is no device at this address.");
}

} // namespace
