#pragma once

#include <KesCommon/ObjectErrorHelper.h>
#include <KesDevice/HardwareManager.h>

#include <support/FakeKestoLink.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace KesTest {

inline KesDevice::Kesto::Address address(std::uint8_t last)
{
    return KesDevice::Kesto::Address(KesDevice::Kesto::Address::Bytes{192, 168, 1, last});
}

inline std::string message(const Kes::Result& result)
{
    return result ? std::string() : Kes::ObjectErrorHelper::toDisplayString({result.getError()});
}

/// Puts a device with the fake's link into the configuration.
inline KesDevice::Kesto* add(KesDevice::HardwareManager& hardware, FakeKesto& fake, std::uint8_t last)
{
    auto kesto = std::make_unique<KesDevice::Kesto>(address(last), fake.createLink());
    auto* added = kesto.get();
    return hardware.getKestos().addKesto(std::move(kesto)) ? added : nullptr;
}

/// For states that come about on other threads without an announcement; false after ten seconds.
inline bool waitUntil(const std::function<bool()>& condition)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

} // namespace KesTest
