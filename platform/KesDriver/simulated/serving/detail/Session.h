#pragma once

#include <KesCommon/Worker.h>
#include <KesDriver/scpi/LineReader.h>
#include <KesDriver/simulated/serving/detail/Dialogue.h>
#include <KesDriver/simulated/serving/detail/Outbox.h>
#include <KesDriver/simulated/serving/detail/SessionSocket.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>

namespace KesDriver {

/// One connection of a served device, with a thread that reads and executes and one that sends. Owned by the server.
/// Any thread.
class Session : public ISession {
public:
    /// Told what is received (true) and answered (false), line by line, on the session's thread.
    using Log = std::function<void(SessionNumber session, bool isReceived, const std::string& line)>;

    /// Begins at once.
    static std::shared_ptr<Session> start(std::shared_ptr<ServedDevice> device, GObjectPtr<GSocket> socket, Log log);
    Session(std::shared_ptr<ServedDevice> device, GObjectPtr<GSocket> socket, Log log);
    /// Ends it, and waits for its threads. Not on the device's threads: of a session that has not ended, only the
    /// server may have the last pointer.
    ~Session() override;

    /// It does not use the device any more, nor does the device's registry know it.
    bool hasEnded() const { return _ended; }
    void waitForEnd() { _worker.wait(); }

    void noteConditions(Scpi::StatusRegister::Bits operation, Scpi::StatusRegister::Bits questionable) override;
    void setSilent(bool isSilent) override;
    void setDelay(std::chrono::milliseconds delay) override;
    void drop() override;

private:
    void _run();
    void _serve();
    bool _executeAll();
    void _end();

    const std::shared_ptr<ServedDevice> _device;
    const Log _log;
    SessionSocket _socket;
    const std::shared_ptr<Outbox> _outbox;
    Dialogue _dialogue;
    Scpi::LineReader _reader;
    SessionNumber _number = 0;
    std::atomic<bool> _dropped{false};
    std::atomic<bool> _ended{false};
    Kes::Worker _worker;
};

} // namespace KesDriver
