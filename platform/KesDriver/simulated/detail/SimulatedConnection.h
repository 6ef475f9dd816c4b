#pragma once

#include <KesDriver/Report.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace KesDriver {

/// Who hears the reports of one link; shared by the link and its connections, which may outlive it. Any
/// thread.
class SimulatedReceiver {
public:
    void set(std::weak_ptr<IReportReceiver> receiver)
    {
        std::lock_guard lock(_mutex);
        _receiver = std::move(receiver);
    }
    /// Null when there is none any more.
    std::shared_ptr<IReportReceiver> get() const
    {
        std::lock_guard lock(_mutex);
        return _receiver.lock();
    }

private:
    mutable std::mutex _mutex;
    std::weak_ptr<IReportReceiver> _receiver;
};

/// One connection of a link to a simulated device, from the attempt to its end.
struct SimulatedConnection {
    /// Lost: by the device's fault; Closed: it never came about or was ended by the link.
    enum class State { Making, Open, Lost, Closed };

    SimulatedConnection(ConnectionNumber number_, std::string name_,
                        std::shared_ptr<SimulatedReceiver> receiver_)
        : number(number_), name(std::move(name_)), receiver(std::move(receiver_))
    {}

    bool hasEnded() const { return state == State::Lost || state == State::Closed; }

    const ConnectionNumber number;
    /// What stands for the device in errors.
    const std::string name;
    const std::shared_ptr<SimulatedReceiver> receiver;
    /// Of a server, which observes the device: its receiver is told of its loss only.
    bool isServed = false;
    /// Changed by the host, under its lock.
    std::atomic<State> state{State::Making};
};

} // namespace KesDriver
