#include "DeviceTest.h"

#include <KesDriver/ConnectionError.h>

#include <support/SimulatedRelay.h>

#include <atomic>
#include <type_traits>

using namespace KesDriver;
using namespace std::chrono_literals;

namespace {

/// Counts what must not happen, however the threads fall.
class Judge : public IReportReceiver {
public:
    void receive(ConnectionNumber connection, const Report& report) override
    {
        EXPECT_FALSE(_isReceiving.exchange(true));
        EXPECT_NE(connection, _lost) << "a report after the loss";
        EXPECT_GE(connection, std::exchange(_lastConnection, connection));
        std::visit(
            [&]<typename Event>(const Event& event) {
                if constexpr (requires { event.time; }) {
                    EXPECT_GE(event.time, std::exchange(_lastTime, event.time));
                }
                if constexpr (std::is_same_v<Event, StepEvent>) {
                    EXPECT_LT(event.step, 3U);
                }
                if constexpr (std::is_same_v<Event, SequenceEvent>) {
                    EXPECT_LE(++ends, given.load());
                }
                if constexpr (std::is_same_v<Event, ConnectionLost>)
                    _lost = connection;
            },
            report);
        _isReceiving = false;
    }

    /// Sequences that the device has been given; set before it gets one.
    std::atomic<unsigned> given{0};
    std::atomic<unsigned> ends{0};

private:
    std::atomic<bool> _isReceiving{false};
    ConnectionNumber _lost = 0;
    ConnectionNumber _lastConnection = 0;
    DeviceTime _lastTime{0};
};

using SimulatedKestoStress = KesTest::DeviceTest;

TEST_F(SimulatedKestoStress, HoldsItsPromisesWhateverComesTogether)
{
    device->connectTestObject(std::make_shared<KesTest::SimulatedRelay>(1.0, 300us, 200us));
    device->setSpeed(1000.0);
    device->setTimeout(5ms);
    device->setFaultRepeatInterval(1ms);
    const auto judge = std::make_shared<Judge>();
    link->setReceiver(judge);

    const OutputSequence sequence(3, OutputStep{KesTest::amperes(2.0), 1ms, InputCondition{1, true, true}});
    std::atomic<bool> isOver{false};
    std::thread reader([&] {
        DeviceTime last{0};
        while (!isOver) {
            DeviceTime time{0};
            KestoState state;
            if (link->readTime(time)) {
                EXPECT_GE(time, last);
                last = time;
            }
            const auto result = link->readState(state);
            EXPECT_TRUE(result || isConnectionError(result));
        }
    });
    std::thread bench([&] {
        for (unsigned round = 0; !isOver; ++round) {
            device->setSilent(round % 7 == 0);
            device->setAnswerDelay(std::chrono::milliseconds(round % 11 == 0 ? 6 : 0));
            device->setInput(1 + round % 8, round % 16 < 8);
            device->setSpeed(round % 2 == 0 ? 1000.0 : 10000.0);
            if (round % 13 == 0)
                device->simulateConnectionLoss();
            if (round % 17 == 0)
                device->simulateOverload(round % 3);
            device->clearFaults();
            network->closeStartContact(2);
            std::this_thread::yield();
        }
    });
    for (int round = 0; round < 200; ++round) {
        if (link->connect(connection) && link->startWorkingMode()) {
            judge->given += 2;
            static_cast<void>(link->runSequence(sequence));
            static_cast<void>(link->stopOutputs());
            static_cast<void>(link->armSequence(sequence));
            static_cast<void>(link->startArmed({.input = 2}));
            if (round % 2 == 0)
                static_cast<void>(link->stopOutputs());
        }
        link->disconnect();
        EXPECT_TRUE(isSoonOff());
    }
    isOver = true;
    reader.join();
    bench.join();
    EXPECT_GT(judge->ends, 0U);
}

} // namespace
