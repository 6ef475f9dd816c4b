#pragma once

#include <KesCommonView/IView.h>
#include <KesDevice/view/DeviceEntry.h>

#include <sigc++/sigc++.h>

#include <cstddef>
#include <vector>

namespace KesDevice {

/// The devices of the configuration that is being edited, in order. GUI thread.
class KES_EXPORT IDeviceListView : public Kes::IView {
public:
    /// The arguments begin with the device's place in the list.
    sigc::signal<void(std::size_t)> signalIdentify;
    /// By one place; down is positive.
    sigc::signal<void(std::size_t, int)> signalMove;
    sigc::signal<void(std::size_t)> signalRemove;
    /// The auxiliary supply is to be on or off, with the voltage as typed.
    sigc::signal<void(std::size_t, bool, const std::string&)> signalAuxDC;

    virtual void setDevices(const std::vector<DeviceEntry>& devices) = 0;
    /// Puts the focus on the device's voltage.
    virtual void focusVolts(std::size_t index) = 0;
};

} // namespace KesDevice
