#pragma once

#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/StringHelper.h>
#include <KesDevice/HardwareManager.h>
#include <KesDevice/HardwareManagerText.h>

#include <support/FakeKestoLink.h>

#include <gmock/gmock.h>

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

namespace KesTest {

using namespace KesDevice;
using namespace std::chrono_literals;
using testing::ElementsAre;

inline Kesto::Address address(std::uint8_t last)
{
    return Kesto::Address(Kesto::Address::Bytes{192, 168, 1, last});
}

inline std::string message(const Kes::Result& result)
{
    return result ? std::string() : Kes::ObjectErrorHelper::toDisplayString({result.getError()});
}

/// Puts a device with the fake's link into the configuration.
/// What is told of a device that talks nonsense.
inline std::string nonsenseOf(const char* device)
{
    return Kes::StringHelper::format(lng::HardwareManager::get("Errors.Kesto.nonsense"), device);
}

inline Kesto* add(HardwareManager& hardware, FakeKesto& fake, std::uint8_t last)
{
    const auto kesto = Kesto::create(address(last), fake.createLink());
    return hardware.getKestos().addKesto(kesto) ? kesto.get() : nullptr;
}

/// For states that come about on other threads without an announcement; false after ten seconds.
inline bool waitUntil(const std::function<bool()>& condition)
{
    for (int tries = 0; tries < 10000 && !condition(); ++tries)
        std::this_thread::sleep_for(1ms);
    return condition();
}

} // namespace KesTest
