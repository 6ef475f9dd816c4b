// Sequences that several simulated devices begin at one moment.

#include "TestBench.h"

#include <support/NoThreads.h>

#include <KesDevice/SyncedRun.h>
#include <KesDriver/simulated/SimulatedNetwork.h>

using namespace KesTest;
using namespace KesDriver;
using testing::HasSubstr;

namespace {

class SyncedRunTest : public testing::Test {
protected:
    SyncedRunTest()
    {
        for (std::uint8_t number = 1; number <= 3; ++number) {
            devices.push_back(std::make_shared<SimulatedKesto>(KestoIdentifer(3, number)));
            EXPECT_TRUE(network->add(address(number), devices.back()));
            EXPECT_TRUE(hardware->addKesto(address(number)));
        }
        hardware->getSyncManager().setActiveMode(SyncModeKind::GPS);
        EXPECT_TRUE(hardware->prepare());
        EXPECT_TRUE(hardware->startWorkingMode());
    }

    static OutputSequence amperes(double value, DeviceTime duration)
    {
        OutputStep step;
        step.outputs.currents[0].magnitude = value;
        step.duration = duration;
        return {step, step};
    }
    /// All three for as long, with currents that tell them apart.
    std::vector<OutputSequence> three(DeviceTime duration) const
    {
        return {amperes(1, duration), amperes(2, duration), amperes(3, duration)};
    }
    bool isPuttingOut(std::size_t device) const { return devices[device]->getOutputs() != OutputState(); }
    bool waitForEnd() const { return run->waitUntil(std::chrono::steady_clock::now() + 10s); }

    std::shared_ptr<SimulatedNetwork> network = std::make_shared<SimulatedNetwork>();
    std::vector<std::shared_ptr<SimulatedKesto>> devices;
    std::unique_ptr<HardwareManager> hardware = HardwareManager::create(network);
    std::shared_ptr<SyncedRun> run;
};

TEST_F(SyncedRunTest, AllRunOnOneTimeBase)
{
    auto sequences = three(20ms);
    sequences[1][0].endOn = InputCondition{1, true};
    devices[1]->setInput(1, true);
    ASSERT_EQ(message(hardware->startSequences(sequences, run)), "");
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(run->isComplete());
    EXPECT_EQ(run->getUncertainty(), 1us);
    std::map<std::size_t, std::vector<long>> steps;
    std::chrono::microseconds last{0};
    for (const auto& event : run->getEvents()) {
        EXPECT_GE(event.sinceStart, last) << "in order";
        last = event.sinceStart;
        if (const auto* step = std::get_if<StepEvent>(&event.report)) {
            EXPECT_EQ(step->step, steps[event.device].size()) << "also at one moment";
            steps[event.device].push_back(event.sinceStart.count());
        }
    }
    EXPECT_THAT(steps[0], ElementsAre(0, 20000));
    EXPECT_THAT(steps[1], ElementsAre(0, 0)) << "its input was closed already";
    EXPECT_THAT(steps[2], ElementsAre(0, 20000));
    EXPECT_EQ(last, 40ms);
}

/// How long after the earliest device each one has begun, on the clock that all devices share.
std::vector<long> skews(HardwareManager& hardware, const std::vector<DeviceTime>& starts)
{
    std::vector<long> moments;
    for (std::size_t i = 0; i < starts.size(); ++i) {
        ClockReading reading;
        EXPECT_TRUE(hardware.getKestos().getItems()[i]->readClock(reading));
        moments.push_back((reading.common - (reading.device - starts[i])).count());
    }
    const long earliest = *std::min_element(moments.begin(), moments.end());
    for (auto& moment : moments)
        moment -= earliest;
    return moments;
}

TEST_F(SyncedRunTest, StartsLieWithinTheModesUncertainty)
{
    EXPECT_FALSE(network->wireStartLine(address(9))) << "there is none";
    ASSERT_TRUE(network->wireStartLine(address(3)) && network->wireStartLine(address(1)));
    std::vector<DeviceTime> starts(3);
    std::vector<std::atomic<int>> inputs(3);
    auto sequences = three(5ms);
    sequences[2][0].outputs.binaryOutputs = 1; // not wired any more
    sequences[0][0].outputs.binaryOutputs = 2; // not for the start
    std::atomic<unsigned> closed{0};
    std::vector<Kes::ScopedConnection> connections;
    for (std::size_t i = 0; i < 3; ++i)
        connections.emplace_back(
            hardware->getKestos().getItems()[i]->signalReport.connect([&, i](const Report& report) {
                if (const auto* step = std::get_if<StepEvent>(&report); step && step->step == 0) {
                    starts[i] = step->time;
                    if (i == 0)
                        closed = devices[0]->getOutputs().binaryOutputs;
                }
                inputs[i] += std::holds_alternative<InputEvent>(report) ? 1 : 0;
            }));
    const std::pair<SyncModeKind, long> modes[] = {{SyncModeKind::Cable, 1},
                                                   {SyncModeKind::GPS, 1},
                                                   {SyncModeKind::PTP, 1},
                                                   {SyncModeKind::BinaryOutput, 200},
                                                   {SyncModeKind::ExternalStart, 100}};
    for (const auto& [mode, uncertainty] : modes) {
        hardware->getSyncManager().setActiveMode(mode);
        ASSERT_EQ(message(hardware->startSequences(sequences, run)), "");
        EXPECT_EQ(run->getUncertainty().count(), uncertainty);
        if (mode == SyncModeKind::ExternalStart) {
            EXPECT_EQ(inputs[0], 0) << "it is the one that starts the others";
            EXPECT_FALSE(run->waitUntil(std::chrono::steady_clock::now() + 50ms))
                << "nobody has started them";
            network->closeStartContact(8);
        }
        ASSERT_TRUE(waitForEnd());
        EXPECT_TRUE(run->isComplete());
        EXPECT_EQ(closed, mode == SyncModeKind::BinaryOutput ? 3U : 2U);
        EXPECT_THAT(skews(*hardware, starts), testing::Each(testing::Le(uncertainty)));
    }
    EXPECT_TRUE(waitUntil([&] { return inputs[0] == 2; })) << "the start contact opens again";
}

TEST_F(SyncedRunTest, EachEndSwitchesAllOffAlsoWithoutThreadsForIt)
{
    const std::pair<const char*, std::function<void()>> ends[] = {
        {"KESTO-3 No. 00002 (192.168.1.2): IA - overload", [this] { devices[1]->simulateOverload(0); }},
        {"The sequences were stopped.", [this] { run->stop(); }},
        {"", [this] { run.reset(); }}};
    for (const bool hasThreads : {true, false})
        for (const auto& [error, end] : ends) {
            SCOPED_TRACE(testing::Message() << "error " << error << ", threads " << hasThreads);
            ASSERT_EQ(message(hardware->startSequences(three(1h), run)), "");
            ASSERT_TRUE(waitUntil([&] { return isPuttingOut(0) && isPuttingOut(1) && isPuttingOut(2); }));
            {
                const auto noThreads = hasThreads ? nullptr : std::make_unique<NoThreads>();
                end();
                ASSERT_TRUE(!run || waitForEnd());
            }
            EXPECT_FALSE(isPuttingOut(0) || isPuttingOut(1) || isPuttingOut(2));
            EXPECT_TRUE(!run || !run->isComplete());
            EXPECT_EQ(run ? run->getError() : "", error);
            run.reset();
            devices[1]->clearFaults();
            ASSERT_TRUE(hardware->stopWorkingMode() && hardware->prepare() && hardware->startWorkingMode());
        }
}

TEST_F(SyncedRunTest, OneThatIsLetGoOfBeforeTheStartEndsTheWaitOfAll)
{
    hardware->getSyncManager().setActiveMode(SyncModeKind::ExternalStart);
    ASSERT_TRUE(hardware->startSequences(three(1h), run));
    devices[1]->setNonsense(true);
    ASSERT_TRUE(waitForEnd());
    EXPECT_THAT(run->getError(), HasSubstr("sends data that make no sense"));
    network->closeStartContact(8);
    EXPECT_FALSE(isPuttingOut(0) || isPuttingOut(1) || isPuttingOut(2));
}

TEST_F(SyncedRunTest, WhatCannotBeStartedTogetherIsRefusedAndNothingRuns)
{
    using Kind = SyncModeKind;
    auto tooMuch = three(1h);
    tooMuch[2][1].outputs.currents[0].magnitude = 33.0;
    const std::vector<OutputSequence> four(4, amperes(1, 1h));
    const std::vector<OutputSequence> withoutFirst{{}, amperes(1, 1h), amperes(1, 1h)};
    const std::tuple<Kind, std::vector<OutputSequence>, const char*> rows[] = {
        {Kind::PowerNetwork, three(1h), "cannot be run in the synchronisation mode “Mains voltage”"},
        {Kind::None, three(1h), "Without synchronisation only one device"},
        {Kind::GPS, tooMuch, "(192.168.1.3): Step 2. IA: 33 A is above the limit of 32 A."},
        {Kind::GPS, four, "There are 4 sequences, but only 3 devices."},
        {Kind::GPS, {{}, {}}, "There is no sequence to run."},
        {Kind::BinaryOutput, withoutFirst, "The first device starts the others"}};
    for (const auto& [mode, sequences, refusal] : rows) {
        hardware->getSyncManager().setActiveMode(mode);
        EXPECT_THAT(message(hardware->startSequences(sequences, run)), HasSubstr(refusal));
        EXPECT_FALSE(run);
        for (const auto& device : devices)
            EXPECT_EQ(device->getEnergisings(), 0U);
        for (const auto& kesto : hardware->getKestos().lease())
            EXPECT_EQ(message(kesto->setOutputs({})), "") << "a sequence is still armed";
    }
    // Alone each mode that knows sequences will do.
    hardware->getSyncManager().setActiveMode(Kind::None);
    ASSERT_EQ(message(hardware->startSequences({{}, amperes(1, 5ms)}, run)), "");
    EXPECT_TRUE(waitForEnd() && run->isComplete());
    ASSERT_TRUE(hardware->stopWorkingMode());
    EXPECT_THAT(message(hardware->startSequences(three(1h), run)), HasSubstr("not switched on"));
}

TEST_F(SyncedRunTest, SixCurrentsComeFromTwoDevices)
{
    const auto& channels = hardware->getVirtualChannels();
    VirtualOutputs outputs;
    for (int i = 1; i <= 6; ++i)
        outputs.currents.push_back({static_cast<double>(i), 10.0 * i});
    outputs.voltages.assign(9, {57.7, 0.0});
    outputs.currentHertz = 51.0;
    std::vector<OutputState> states;
    ASSERT_TRUE(channels.split(outputs, states));
    ASSERT_EQ(states.size(), 3U);
    EXPECT_EQ(states[1].currents[0], (Phasor{4.0, 40.0})) << "current 4 is IA of the second device";
    EXPECT_EQ(states[1].currents[2], (Phasor{6.0, 60.0}));
    EXPECT_EQ(states[2].currents, OutputState().currents);
    EXPECT_EQ(states[2].voltages[2].magnitude, 57.7);
    EXPECT_EQ(states[2].currentHertz, 51.0);
    outputs.currents.resize(10);
    EXPECT_EQ(message(channels.split(outputs, states)),
              "Current 10 does not exist: the devices have 9 together.");
}

} // namespace
