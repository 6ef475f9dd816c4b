#pragma once

#include <KesCommon/StringHelper.h>
#include <KesDevice/HardwareManager.h>
#include <KesDevice/HardwareManagerText.h>

#include <support/FakeKestoLink.h>
#include <support/Message.h>
#include <support/WaitUntil.h>

#include <gmock/gmock.h>

#include <atomic>
#include <vector>

namespace KesTest {

using namespace KesDevice;
using namespace std::chrono_literals;
using testing::ElementsAre;

inline Kesto::Address address(std::uint8_t last)
{
    return Kesto::Address(Kesto::Address::Bytes{192, 168, 1, last});
}

/// What is told of a device that talks nonsense.
inline std::string nonsenseOf(const char* device)
{
    return Kes::StringHelper::format(lng::HardwareManager::get("Errors.Kesto.nonsense"), device);
}

/// Puts a device with the fake's link into the configuration.
inline Kesto* add(HardwareManager& hardware, FakeKesto& fake, std::uint8_t last)
{
    const auto kesto = Kesto::create(address(last), fake.createLink());
    return hardware.getKestos().addKesto(kesto) ? kesto.get() : nullptr;
}

} // namespace KesTest
