#pragma once

#include <KesCommon/Connection.h>
#include <KesDevice/HardwareManager.h>
#include <KesDevice/OperationTurn.h>

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace KesDevice {

/// The inner side of a configuration: its turn, its view of the devices' signals, and work on all devices at
/// once. Any thread.
class HardwareManager::Impl {
public:
    using Kestos = std::vector<std::shared_ptr<Kesto>>;
    using Errors = Kes::ObjectError::List;

    /// Tells what is going on, if that is wanted, and that nothing is any more at its end.
    class Status {
    public:
        explicit Status(const HardwareManager& hardware) : _hardware(hardware) {}
        ~Status();
        Status(const Status&) = delete;
        Status& operator=(const Status&) = delete;

        void show(const std::string& text) const;

    private:
        const HardwareManager& _hardware;
        mutable bool _shown = false;
    };

    explicit Impl(HardwareManager& hardware);

    OperationTurn turn;
    std::atomic<bool> isRetired{false};

    /// All devices at the same time, so that one that does not answer keeps no other one waiting.
    /// One error per device that failed, in the order of the devices, naming it. Only with the turn.
    Errors onEach(const Kestos& kestos, const std::function<Kes::Result(Kesto&)>& operation);
    static Kes::Result toResult(const char* key, const Errors& errors);

    Kes::Result checkStart(const Kestos& kestos) const;
    void setRunning(bool running);
    void countRunning(int by);

    /// Returns when no device is being stopped because of a fault any more. Not with the turn.
    void waitForStops();

private:
    void _onInserted(Kesto* kesto);
    void _onRemoved(Kesto* kesto);
    void _onAvary(Kesto* kesto, KesDriver::KesAvary& avary);
    void _stopOthers(const Kesto* faulty);
    void _stop(Kesto& kesto);

    HardwareManager& _hardware;
    /// By device; used under the signal gate.
    std::map<Kesto*, std::vector<Kes::ScopedConnection>> _connections;
    /// One for each device that a fault elsewhere has stopped; used under the signal gate.
    std::vector<std::thread> _stops;
    Kes::ScopedConnection _inserted;
    Kes::ScopedConnection _removed;
};

} // namespace KesDevice
