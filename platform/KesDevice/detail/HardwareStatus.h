#pragma once

#include <KesCommon/SignalGate.h>
#include <KesDevice/HardwareManager.h>

#include <chrono>
#include <string>
#include <utility>
#include <vector>

namespace KesDevice {

/// Reports what is being done, if that is wanted or takes long. Several may be shown at a time, one inside
/// the other or on different threads: the newest counts, and the end of the last one says that nothing is
/// done any more. A configuration that has been replaced reports nothing: nobody may be there any more to
/// hear the end.
class HardwareManager::Status {
public:
    using Clock = std::chrono::steady_clock;

    Status(HardwareManager& hardware, std::string text) : _hardware(hardware), _text(std::move(text))
    {
        if (_hardware.isStatusReported())
            show();
    }
    ~Status()
    {
        if (_isShown)
            _end();
    }
    Status(const Status&) = delete;
    Status& operator=(const Status&) = delete;

    /// When the work has taken so long that it is reported even where single steps are not.
    Clock::time_point getDue() const { return _due; }

    void show() const
    {
        // Asked before the gate as well: what is replaced is switched off before its listeners are done.
        if (_isShown || _hardware._isRetired)
            return;
        const Kes::SignalGate::Guard gate;
        if (_hardware._isRetired)
            return;
        _isShown = true;
        _hardware._statuses.push_back(this);
        _hardware.signalStatusChanged.emit(_text.c_str());
    }

    /// While others still listen to a configuration that is being replaced.
    static void endAll(HardwareManager& hardware)
    {
        const Kes::SignalGate::Guard gate;
        if (!std::exchange(hardware._statuses, {}).empty())
            hardware.signalStatusChanged.emit("");
    }

private:
    void _end()
    {
        const Kes::SignalGate::Guard gate;
        auto& statuses = _hardware._statuses;
        const bool isNewest = !statuses.empty() && statuses.back() == this;
        std::erase(statuses, this);
        if (!isNewest)
            return;
        // A copy: a slot may let go of the gate, and the outer one end meanwhile.
        const auto outer = statuses.empty() ? std::string() : statuses.back()->_text;
        _hardware.signalStatusChanged.emit(outer.c_str());
    }

    static constexpr std::chrono::milliseconds moment{150};

    HardwareManager& _hardware;
    const std::string _text;
    const Clock::time_point _due = Clock::now() + moment;
    mutable bool _isShown = false;
};

} // namespace KesDevice
