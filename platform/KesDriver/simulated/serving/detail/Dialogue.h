#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/Outputs.h>
#include <KesDriver/scpi/InstrumentStatus.h>
#include <KesDriver/scpi/Unit.h>
#include <KesDriver/simulated/serving/detail/ServedDevice.h>

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace KesDriver {

/// What one session says to a device and hears from it, without the connection it says it over: its registers
/// and errors, its prepared sequence, its subscription, its watchdog. The session's thread; `noteConditions`
/// on any.
class KES_EXPORT Dialogue {
public:
    using RealTime = std::chrono::steady_clock::time_point;
    /// The answers to one message.
    static constexpr std::size_t longestAnswer = std::size_t{1} << 20U;

    /// Events go to the sink. The address stands for this session in other ones.
    Dialogue(std::shared_ptr<ServedDevice> device, std::shared_ptr<ILineSink> sink, std::string address);
    ~Dialogue();
    /// Before the first message: the number that the device's registry has given.
    void begin(SessionNumber number) { _number = number; }
    /// After the last one: gives control back and ends the subscription.
    void end();

    /// The answers to a message on one line; none when nothing was asked.
    std::optional<std::string> execute(std::string_view message);
    void noteConditions(Scpi::StatusRegister::Bits operation, Scpi::StatusRegister::Bits questionable);

    /// Something has been received.
    void noteHeard(RealTime time) { _heard = time; }
    /// When the watchdog takes control away unless something is heard.
    std::optional<RealTime> getDeadline() const;
    /// Takes control away when it is time.
    void checkWatchdog(RealTime now);

    // For what carries out the commands.

    ServedDevice& getDevice() const { return *_device; }
    SessionNumber getNumber() const { return _number; }
    const std::string& getAddress() const { return _address; }
    const std::shared_ptr<ILineSink>& getSink() const { return _sink; }
    OutputSequence& getSequence() { return _sequence; }
    /// Whether an answer to this message is there already.
    bool hasAnswer() const { return _hasAnswer; }
    std::chrono::duration<double> getWatchdog() const { return _watchdog; }
    void setWatchdog(std::chrono::duration<double> time) { _watchdog = time; }
    void addError(const Scpi::Error& error);

    template <typename Action>
    auto useStatus(Action&& action)
    {
        std::lock_guard lock(_mutex);
        return action(_status);
    }
    /// Asks the device, or does to it what needs no control.
    template <typename Action>
    auto use(Action&& action) const
    {
        return _device->getHost().use(std::forward<Action>(action));
    }
    /// As `use`, for what can fail. Throws Scpi::Error then.
    void read(const SimulatedHost::Request& request) const;
    /// Throws Scpi::Error without control, and for what the device refuses.
    void control(const SimulatedHost::Request& request) const;

private:
    void _execute(const Scpi::Unit& unit, std::string& answer);

    const std::shared_ptr<ServedDevice> _device;
    const std::shared_ptr<ILineSink> _sink;
    const std::string _address;
    SessionNumber _number = 0;
    std::mutex _mutex;
    Scpi::InstrumentStatus _status;
    OutputSequence _sequence;
    bool _hasAnswer = false;
    /// 0 for none.
    std::chrono::duration<double> _watchdog{0.0};
    RealTime _heard;
};

} // namespace KesDriver
