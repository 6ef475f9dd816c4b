#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/IKestoLink.h>
#include <KesDriver/Refusal.h>
#include <KesDriver/net/StreamConnector.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace KesDriver {

class ReportQueue;
class StreamConnection;
struct Answer;

/// The connection to a device that speaks the network protocol (docs/protocol.md) over a stream of bytes,
/// made by the connector at each attempt to connect. Any thread.
///
/// Connecting takes control of the device and sets its watchdog. It fails for a device that another
/// controller has, whose name the error then gives, and for another major version of the protocol.
///
/// An answer that comes too late, twice or to another question, or makes no sense, ends the connection, and
/// so does a device that has been restarted behind it. Events that are missing are asked for once; when
/// they are lost for good, come twice, go back in time or cannot be read, the receiver hears of an event
/// that no device can have (input 0 at a negative time), as from any device that cannot be believed.
///
/// A long sequence is sent in parts, so that a stop waits for none of it. A stop that is asked for while a
/// sequence is on its way keeps it from being started; `runSequence` fails then.
class KES_EXPORT StreamLink : public IKestoLink {
public:
    /// How the device is reached. A value.
    struct Settings {
        /// Makes the stream of each connection.
        StreamConnector connector;
        /// Stands for the device in texts; behind its identifier as soon as that is known.
        std::string address;
        /// The name that others see as the controller; empty: this program and this computer.
        std::string controller = {};
        /// How long an answer may take, and the beginning of a connection besides making the stream; asked at
        /// each attempt to connect.
        std::function<std::chrono::milliseconds()> getTimeout = [] { return std::chrono::seconds(2); };
        /// How long a device may take to notice that a former connection of this program has ended.
        std::chrono::milliseconds formerEnd{300};
        /// For a simulated device: after each event it does nothing more by itself until the receiver has
        /// heard of it, see `SIMulation:LOCKstep`.
        bool isInLockstep = false;
    };

    /// Reaches for nothing; that is up to `connect`.
    explicit StreamLink(Settings settings);
    ~StreamLink() override;

    /// What the device has reported at its last connection; before that, whether it is to be in lockstep.
    bool isSimulated() const override { return _isSimulated; }
    void setReceiver(std::weak_ptr<IReportReceiver> receiver) override;

    Kes::Result connect(ConnectionNumber& connection) override;
    void disconnect() override;

    Kes::Result identify(KestoIdentity& identity) override;
    Kes::Result readState(KestoState& state) override;
    Kes::Result readLimits(OutputLimits& limits) override;
    Kes::Result readTime(DeviceTime& time) override;

    Kes::Result setAuxDC(bool enable, double volts) override;
    Kes::Result startWorkingMode() override;
    Kes::Result stopWorkingMode() override;

    Kes::Result setOutputs(const OutputState& outputs) override;
    Kes::Result runSequence(const OutputSequence& sequence) override;
    Kes::Result stopOutputs() override;

    Kes::Result armSequence(const OutputSequence& sequence) override;
    Kes::Result startArmed(const StartMoment& moment) override;
    Kes::Result readClock(ClockReading& reading) override;

private:
    using Connection = std::shared_ptr<StreamConnection>;
    using Fields = std::vector<std::string>;
    /// False when the answer makes no sense.
    using Read = std::function<bool(const Fields&)>;

    Connection _getConnection() const;
    std::optional<OutputLimits> _getLimits() const;
    std::string _getName() const;

    Kes::Result _open(StreamConnection& connection);
    Kes::Result _greet(StreamConnection& connection);
    Kes::Result _takeControl(StreamConnection& connection);
    Kes::Result _subscribe(StreamConnection& connection);

    Kes::Result _call(const std::string& commands);
    Kes::Result _call(const std::string& commands, std::size_t queries, const Read& read);
    Kes::Result _ask(StreamConnection& connection, const std::string& commands, std::size_t queries = 0,
                     const Read& read = nullptr) const;
    Kes::Result _judge(StreamConnection& connection, const std::optional<Answer>& answer,
                       const Read& read) const;
    Kes::Result _refuseStopped() const;
    Kes::Result _sendSequence(const OutputSequence& sequence, const char* start);

    Kes::Result _fail(const char* key) const;
    Kes::Result _refuse(RefusalCode code, const std::string& reason) const;
    Kes::Result _refuse(const Kes::Result& reason) const;
    Kes::Result _describeEnd(const StreamConnection& connection) const;
    Kes::Result _describeRefusal(StreamConnection& connection, const Answer& answer) const;

    const Settings _settings;
    const std::shared_ptr<ReportQueue> _reports;
    std::atomic<bool> _isSimulated;

    /// For the members up to the limits. Not held while the device is asked.
    mutable std::mutex _mutex;
    ConnectionNumber _lastNumber = 0;
    Connection _connection;
    std::string _name;
    /// As told at the beginning of the connection: what lies outside is refused here. Without them the
    /// device decides.
    std::optional<OutputLimits> _limits;
    /// How often the outputs have been asked to stop.
    std::atomic<unsigned> _stops{0};
    /// One sequence is sent and started at a time.
    std::mutex _sending;
};

} // namespace KesDriver
