#include "ScheduleBench.h"

#include "DefaultHardware.h"
#include "ThreadCount.h"

#include <KesCommon/ObjectErrorHelper.h>
#include <KesDevice/DeviceState.h>
#include <KesDevice/HardwareIsRunningComponent.h>
#include <KesDevice/HardwareManagerText.h>
#include <KesDevice/KestoStateGlobalUpdater.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <condition_variable>
#include <cstdlib>
#include <future>
#include <iostream>
#include <sys/prctl.h>
#include <thread>

namespace KesTest {

using namespace KesDriver;
using namespace std::chrono_literals;
using KesDevice::HardwareManager;
using KesDevice::Kesto;

namespace {

constexpr unsigned firstSerialNumber = 101;

/// The texts that concern the configuration as a whole.
bool isAboutAll(const std::string& text)
{
    static const std::array keys = {"Errors.General.alreadyRunning", "Errors.General.noKestos",
                                    "Errors.General.replaced",       "Errors.Sync.outputOff",
                                    "Errors.Sync.noneForSeveral",    "Errors.Sync.nothingToRun"};
    const auto isIn = [&](const char* part) { return text.find(part) != std::string::npos; };
    return std::ranges::any_of(keys, [&](const char* key) { return isIn(lng::HardwareManager::get(key)); });
}

/// The first seed, and how far it is to the next one.
std::pair<unsigned, unsigned> getPart()
{
    const char* const part = std::getenv("KES_SCHEDULE_PART");
    if (!part)
        return {1, 1};
    const std::string text = part;
    const auto slash = text.find('/');
    return {static_cast<unsigned>(std::stoul(text)),
            static_cast<unsigned>(std::stoul(text.substr(slash + 1)))};
}

bool isNonsense(const std::string& text)
{
    return text.find("make no sense") != std::string::npos;
}

} // namespace

void Dice::pause(std::chrono::microseconds longest)
{
    std::this_thread::sleep_for(
        std::chrono::microseconds(scheduleSlowness * roll(static_cast<unsigned>(longest.count()) + 1)));
}

void runSchedules(unsigned count, const std::function<bool(unsigned seed)>& schedule)
{
    // For this thread and those that it starts, a pause of a microsecond is one.
    prctl(PR_SET_TIMERSLACK, 1000);
    const DefaultHardware defaultHardware;
    auto& updater = KesDevice::KestoStateGlobalUpdater::getInstance();
    // Its thread is there before the threads are counted.
    updater.setUpdating(true);
    updater.setUpdating(false);
    updater.setInterval(1ms);
    const auto threads = countThreads();
    const auto defects = KesDevice::countTransitionDefects();
    const char* const only = std::getenv("KES_SCHEDULE");
    const auto [first, step] = only ? std::pair(static_cast<unsigned>(std::stoul(only)), count) : getPart();
    const auto last = only ? first : count / scheduleShare;
    unsigned ran = 0, all = 0;
    for (unsigned seed = first; seed <= last && !testing::Test::HasFailure(); seed += step, ++all) {
        SCOPED_TRACE("KES_SCHEDULE=" + std::to_string(seed));
        ran += schedule(seed) ? 1 : 0;
        EXPECT_EQ(KesDevice::countTransitionDefects(), defects);
    }
    updater.setInterval(1000ms);
    testing::Test::RecordProperty("schedules", static_cast<int>(all));
    testing::Test::RecordProperty("schedulesWithOutputs", static_cast<int>(ran));
    // Far more on an idle machine; a busy one stops many runs before they have begun, and some parts are
    // small.
    EXPECT_GE(ran * 20, all) << "the outputs hardly ever run";
    EXPECT_TRUE(waitUntil([&] { return countThreads() <= threads; })) << countThreads() - threads << " more";
}

void ScheduleThreads::begin(const Step& step, unsigned times)
{
    const auto seed = _seed + 7919 * static_cast<unsigned>(_threads.size() + 1);
    _threads.push_back(std::async(std::launch::async, [step, times, dice = Dice(seed)]() mutable {
        for (unsigned i = 0; i < times; ++i)
            step(dice);
    }));
}

void ScheduleThreads::awaitAll()
{
    for (const auto& thread : _threads) {
        if (thread.wait_for(60s) == std::future_status::ready)
            continue;
        std::cerr << "KES_SCHEDULE=" << _seed << " hangs.\n";
        std::abort();
    }
}

// The devices

ScheduleBench::Device::Device(std::uint8_t number, Dice& dice)
    : address(Kesto::Address::Bytes{10, 1, 0, number}),
      simulated(std::make_shared<SimulatedKesto>(KestoIdentifer(3, firstSerialNumber + number)))
{
    if (dice.isOneIn(40))
        simulated->setAnswerDelay(std::chrono::milliseconds(1 + dice.roll(3)));
    if (dice.isOneIn(2))
        simulated->setFaultRepeatInterval(2ms);
}

bool ScheduleBench::Device::isNamedIn(const Text& text) const
{
    return text.find(address.to_string()) != std::string::npos ||
           text.find(simulated->getIdentifer().toDisplayString()) != std::string::npos;
}

std::shared_ptr<ScheduleBench> ScheduleBench::create(Dice& dice)
{
    std::shared_ptr<ScheduleBench> bench(new ScheduleBench());
    const auto count = 2 + (dice.isOneIn(3) ? dice.roll(7) : dice.roll(2));
    for (unsigned i = 1; i <= count; ++i) {
        auto& device =
            *bench->_devices.emplace_back(std::make_unique<Device>(static_cast<std::uint8_t>(i), dice));
        bench->_network->add(device.address, device.simulated);
    }
    return bench;
}

std::vector<ScheduleBench::Address> ScheduleBench::getAddresses() const
{
    std::vector<Address> addresses;
    for (const auto& device : _devices)
        addresses.push_back(device->address);
    return addresses;
}

std::unique_ptr<HardwareManager> ScheduleBench::createHardware(Dice& dice)
{
    auto hardware = HardwareManager::create(_network);
    for (const auto& address : getAddresses())
        (void)hardware->addKesto(address);
    hardware->setIsStopOnFault(!dice.isOneIn(4));
    hardware->setIsStatusReported(dice.isOneIn(2));
    listenTo(*hardware);
    return hardware;
}

void ScheduleBench::listenTo(HardwareManager& hardware)
{
    const auto self = shared_from_this();
    hardware.signalAvary.connect([self](KesAvary& avary) { self->_onAvary(avary); });
    hardware.signalKestoState.connect([self](Kesto* kesto, const char* text) {
        self->hear(kesto ? kesto->toDisplayString() + ": " + text : Text(text));
    });
    const auto isOn = std::make_shared<std::atomic<bool>>(false);
    hardware.signalRunningChanged.connect([self, isOn](bool running) {
        if (isOn->exchange(running) == running)
            self->complain("The output is said to run, or not to run, twice.");
    });
}

// The hand at the bench

/// A silent device loses its connection soon. It does so here instead of by the links' time-outs, which would
/// have to be so short that a device counts as lost whose threads only wait for a processor.
void ScheduleBench::_silence(Device& device)
{
    device.isSilent = true;
    device.simulated->setSilent(true);
    std::lock_guard lock(_mutex);
    if (!_dropping.joinable())
        _dropping = std::jthread([this](std::stop_token stop) { _dropSilent(stop); });
}

void ScheduleBench::_dropSilent(std::stop_token stop)
{
    std::mutex mutex;
    std::condition_variable_any ended;
    std::unique_lock lock(mutex);
    while (!ended.wait_for(lock, stop, scheduleSlowness * 15ms, [&] { return stop.stop_requested(); })) {
        for (const auto& device : _devices)
            if (device->isSilent) {
                // The one that stands, and one that waited for its end and gets through before it is dropped,
                // too.
                device->losses += 2;
                device->simulated->dropConnections();
            }
    }
}

void ScheduleBench::_setNonsense(Device& device, bool nonsense)
{
    if (nonsense)
        device.hasTalkedNonsense = true;
    device.simulated->setNonsense(nonsense);
}

void ScheduleBench::_lose(Device& device)
{
    ++device.losses;
    device.simulated->simulateConnectionLoss();
}

/// Not long: they may not come at all.
void ScheduleBench::_awaitOutputs() const
{
    const auto end = std::chrono::steady_clock::now() + scheduleSlowness * 20ms;
    while (!haveRun() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(100us);
}

void ScheduleBench::disturb(Dice& dice)
{
    if (dice.isOneIn(2))
        _awaitOutputs();
    dice.pause(600us);
    auto& device = *dice.pick(_devices);
    switch (dice.roll(12)) {
    case 0:
    case 1:
        _lose(device);
        break;
    case 2:
        device.simulated->simulateOverload(dice.roll(6));
        break;
    case 3:
        device.simulated->simulateOverheat(dice.roll(6));
        break;
    case 4:
        device.simulated->simulateQuickShutdown();
        break;
    case 5:
        _silence(device);
        break;
    case 6:
        _setNonsense(device, true);
        break;
    case 7:
        device.simulated->setInput(1 + dice.roll(4), dice.isOneIn(2));
        break;
    default:
        for (const auto& other : _devices) {
            other->isSilent = false;
            other->simulated->setSilent(false);
            _setNonsense(*other, false);
            other->simulated->clearFaults();
        }
    }
}

void ScheduleBench::causeOne(Dice& dice)
{
    auto& device = *dice.pick(_devices);
    switch (dice.roll(4)) {
    case 0:
        _lose(device);
        break;
    case 1:
        _silence(device);
        break;
    case 2:
        _setNonsense(device, true);
        break;
    default:
        device.simulated->simulateOverload(dice.roll(6));
    }
}

// What is told

void ScheduleBench::hear(const Kes::Result& result)
{
    if (result)
        return;
    if (!result.getError()) {
        complain("A failure without a text.");
        return;
    }
    ++_told;
    _hearInner(*result.getError());
}

/// What has inner errors leaves it to them to name the devices.
void ScheduleBench::_hearInner(const Kes::ObjectError& error)
{
    if (error.getInner().empty()) {
        hear(error.getMessage());
        --_told;
    }
    for (const auto& inner : error.getInner())
        _hearInner(*inner);
}

void ScheduleBench::hear(const Text& text)
{
    ++_told;
    bool isNamed = false;
    bool isNonsenseTrue = !isNonsense(text);
    for (const auto& device : _devices)
        if (device->isNamedIn(text)) {
            isNamed = true;
            isNonsenseTrue = isNonsenseTrue || device->hasTalkedNonsense;
        }
    if (!isNamed && !isAboutAll(text))
        complain("Which device? " + text);
    if (!isNonsenseTrue)
        complain("Wrongly accused: " + text);
}

void ScheduleBench::_onAvary(const KesAvary& avary)
{
    ++_told;
    const auto number = avary.serialNumber - firstSerialNumber;
    if (number == 0 || number > _devices.size())
        complain("A fault of an unknown device.");
    else if (avary.isConnectError)
        ++_devices[number - 1]->lossesTold;
    else if (describeFaults(avary).empty())
        complain("A fault that says nothing.");
}

void ScheduleBench::checkTold()
{
    for (const auto& device : _devices)
        // An answer without sense costs the connection, too.
        if (device->lossesTold > device->losses && !device->hasTalkedNonsense)
            complain(device->address.to_string() + " is said to be lost too often.");
    std::lock_guard lock(_mutex);
    EXPECT_THAT(_complaints, testing::IsEmpty());
}

void ScheduleBench::complain(const Text& complaint)
{
    std::lock_guard lock(_mutex);
    _complaints.push_back(complaint);
}

// What the devices say

void ScheduleBench::checkOutputs() const
{
    const auto areOff = [this] {
        return std::ranges::none_of(_devices, [](const auto& device) {
            return device->simulated->isWorking() || device->simulated->getOutputs() != OutputState();
        });
    };
    EXPECT_TRUE(waitUntil(areOff)) << "outputs are on";
    EXPECT_TRUE(waitUntil([] { return !KesDevice::HardwareIsRunningComponent::getInstance().isRunning(); }));
}

bool ScheduleBench::haveRun() const
{
    return std::ranges::any_of(_devices,
                               [](const auto& device) { return device->simulated->getEnergisings() > 0; });
}

} // namespace KesTest
