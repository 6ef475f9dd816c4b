#pragma once

#include "WaitUntil.h"

#include <KesDevice/HardwareManager.h>
#include <KesDriver/simulated/SimulatedNetwork.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <random>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

namespace KesTest {

/// One in how many schedules a build runs, and how much longer things take in it.
#if defined(__SANITIZE_ADDRESS__)
constexpr unsigned scheduleShare = 20;
constexpr unsigned scheduleSlowness = 12;
#elif defined(__SANITIZE_THREAD__)
constexpr unsigned scheduleShare = 20;
constexpr unsigned scheduleSlowness = 4;
#else
constexpr unsigned scheduleShare = 1;
constexpr unsigned scheduleSlowness = 1;
#endif

/// The random numbers of one thread of a schedule.
class Dice {
public:
    explicit Dice(unsigned seed) : _random(seed) {}

    /// From 0 to `count` - 1.
    unsigned roll(unsigned count) { return static_cast<unsigned>(_random() % count); }
    /// As often as one in so many times.
    bool isOneIn(unsigned count) { return roll(count) == 0; }
    template <typename T>
    const T& pick(const std::vector<T>& items)
    {
        return items[roll(static_cast<unsigned>(items.size()))];
    }
    /// Lets time pass, since no event says when the worst moment is. Longer in a build in which the others
    /// take longer as well.
    void pause(std::chrono::microseconds longest);

private:
    std::mt19937 _random;
};

/// Runs a schedule for each seed; only one of them when the environment variable KES_SCHEDULE names it, and
/// every third one from the second on when KES_SCHEDULE_PART is "2/3". A schedule returns whether outputs
/// have been on, as in a twentieth of them they have to be. No schedule may leave a thread or a wrong change
/// of a state behind. The state updater works meanwhile without a pause.
void runSchedules(unsigned count, const std::function<bool(unsigned seed)>& schedule);

/// What the threads of a schedule beside its own do, each with dice of its own.
class ScheduleThreads {
public:
    using Step = std::function<void(Dice&)>;

    explicit ScheduleThreads(unsigned seed) : _seed(seed) {}
    void begin(const Step& step, unsigned times);
    /// One that hangs ends the process, since nothing can be taken down any more.
    void awaitAll();

private:
    const unsigned _seed;
    std::vector<std::future<void>> _threads;
};

/// The devices of one schedule on a network of their own, the hand that lets them fail, and all that is told
/// of them. Any thread.
class ScheduleBench : public std::enable_shared_from_this<ScheduleBench> {
public:
    using Address = KesDevice::Kesto::Address;
    using Text = std::string;

    static std::shared_ptr<ScheduleBench> create(Dice& dice);

    const std::shared_ptr<KesDriver::SimulatedNetwork>& getNetwork() const { return _network; }
    std::vector<Address> getAddresses() const;

    /// A configuration with all of the devices, whose texts are heard.
    std::unique_ptr<KesDevice::HardwareManager> createHardware(Dice& dice);
    /// Hears what a configuration tells; the bench lives as long as it does.
    void listenTo(KesDevice::HardwareManager& hardware);

    /// One thing that happens at the bench after a while, as often as not when the outputs have come on.
    void disturb(Dice& dice);
    /// One thing that lasts until the end of the schedule: a loss, silence, nonsense or a fault.
    void causeOne(Dice& dice);

    // What is wrong is kept as a complaint.

    /// The result of an operation of a configuration.
    void hear(const Kes::Result& result);
    /// A text for the user.
    void hear(const Text& text);
    void complain(const Text& complaint);
    /// Texts and failures so far.
    unsigned countTold() const { return _told; }
    /// That all outputs go off.
    void checkOutputs() const;
    /// That what was told is true, and no device was said to be lost more often than it was.
    void checkTold();

    // As the devices themselves say.

    bool haveRun() const;

private:
    struct Device {
        Device(std::uint8_t number, Dice& dice);
        /// Whether the text means this device.
        bool isNamedIn(const Text& text) const;

        const Address address;
        const std::shared_ptr<KesDriver::SimulatedKesto> simulated;
        std::atomic<bool> hasTalkedNonsense{false};
        std::atomic<bool> isSilent{false};
        /// What may have cost it its connection.
        std::atomic<unsigned> losses{0};
        std::atomic<unsigned> lossesTold{0};
    };

    ScheduleBench() = default;
    void _awaitOutputs() const;
    void _silence(Device& device);
    void _dropSilent(std::stop_token stop);
    void _setNonsense(Device& device, bool nonsense);
    void _lose(Device& device);
    void _hearInner(const Kes::ObjectError& error);
    void _onAvary(const KesDriver::KesAvary& avary);

    const std::shared_ptr<KesDriver::SimulatedNetwork> _network =
        std::make_shared<KesDriver::SimulatedNetwork>();
    std::vector<std::unique_ptr<Device>> _devices;
    std::atomic<unsigned> _told{0};
    mutable std::mutex _mutex;
    std::vector<Text> _complaints;
    /// Last: it works with the devices.
    std::jthread _dropping;
};

} // namespace KesTest
