#pragma once

#include <KesDevice/HardwareManager.h>

#include <string>
#include <utility>

namespace KesDevice {

/// Tells what is going on, if that is wanted or takes long, and that nothing is any more at its end.
class HardwareManager::Status {
public:
    Status(const HardwareManager& hardware, std::string text) : _hardware(hardware), _text(std::move(text))
    {
        if (_hardware.isStatusReported())
            show();
    }
    ~Status()
    {
        if (_isShown)
            _hardware.signalStatusChanged.emit("");
    }
    Status(const Status&) = delete;
    Status& operator=(const Status&) = delete;

    void show() const
    {
        if (!std::exchange(_isShown, true))
            _hardware.signalStatusChanged.emit(_text.c_str());
    }

private:
    const HardwareManager& _hardware;
    const std::string _text;
    mutable bool _isShown = false;
};

} // namespace KesDevice
