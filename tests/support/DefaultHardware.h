#pragma once

#include <KesDevice/HardwareControl.h>
#include <KesDriver/EmbeddedNetwork.h>

namespace KesTest {

/// For its life and at its end the global configuration is the default one, with the simulated device alone:
/// what a test has installed must not decide what the next one tests.
class DefaultHardware {
public:
    DefaultHardware() { install(); }
    ~DefaultHardware() { restore(); }
    DefaultHardware(const DefaultHardware&) = delete;
    DefaultHardware& operator=(const DefaultHardware&) = delete;

    static std::unique_ptr<KesDevice::HardwareManager> create()
    {
        auto hardware = KesDevice::HardwareManager::create();
        (void)hardware->addKesto(KesDriver::embeddedAddress);
        return hardware;
    }
    /// When it returns, what was there before has ended.
    static void restore()
    {
        install();
        KesDevice::HardwareControl::waitForRetired();
    }

private:
    static void install() { KesDevice::HardwareControl::setGlobalInstance(create(), true); }
};

} // namespace KesTest
