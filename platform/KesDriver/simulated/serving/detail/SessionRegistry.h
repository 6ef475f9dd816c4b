#pragma once

#include <KesDriver/scpi/StatusRegister.h>
#include <KesDriver/simulated/serving/detail/DeviceControl.h>

#include <chrono>
#include <map>
#include <memory>
#include <mutex>

namespace KesDriver {

/// A session as the others and the device see it. Any thread; nothing here waits.
class ISession {
public:
    virtual ~ISession() = default;
    /// The conditions of the device's status registers are these from now on.
    virtual void noteConditions(Scpi::StatusRegister::Bits operation,
                                Scpi::StatusRegister::Bits questionable) = 0;
    /// While silent, nothing is sent.
    virtual void setSilent(bool isSilent) = 0;
    /// Answers are sent so much later.
    virtual void setDelay(std::chrono::milliseconds delay) = 0;
    /// Ends the session without a word.
    virtual void drop() = 0;
};

/// The sessions of a device that are there at the moment, and how badly the network treats them. Any thread.
class SessionRegistry {
public:
    SessionNumber add(const std::shared_ptr<ISession>& session);
    void remove(SessionNumber session);

    void noteConditions(Scpi::StatusRegister::Bits operation, Scpi::StatusRegister::Bits questionable);
    /// For all sessions, those to come included, but for one.
    void setSilent(bool isSilent, SessionNumber except);
    void setDelay(std::chrono::milliseconds delay, SessionNumber except);
    /// Whether a session that begins now would hear something within that time.
    bool canAnswerWithin(std::chrono::milliseconds time) const;
    void dropOthers(SessionNumber except);
    void drop(SessionNumber session);

private:
    mutable std::mutex _mutex;
    std::map<SessionNumber, std::weak_ptr<ISession>> _sessions;
    SessionNumber _last = 0;
    Scpi::StatusRegister::Bits _operation = 0;
    Scpi::StatusRegister::Bits _questionable = 0;
    bool _isSilent = false;
    std::chrono::milliseconds _delay{0};

    template <typename Action>
    void _forEach(Action&& action) const;
};

} // namespace KesDriver
