#pragma once

#include "TestBench.h"

#include <optional>

namespace KesTest {

/// What is done with a device, and what happens to it.
struct DeviceAction {
    const char* name;
    Kes::Result (*run)(Kesto& kesto, FakeKesto& fake);
    /// The call of the link that it is made of; none for what happens to the device.
    std::optional<LinkCall> call = std::nullopt;
};

namespace Actions {

inline Kes::Result happen(std::future<void> heard)
{
    heard.wait();
    return true;
}

inline constexpr DeviceAction connect{"connect", [](Kesto& kesto, FakeKesto&) { return kesto.connect(); },
                                      LinkCall::Identify};
inline constexpr DeviceAction updateState{
    "updateState", [](Kesto& kesto, FakeKesto&) { return kesto.updateState(); }, LinkCall::ReadState};
inline constexpr DeviceAction startWorkingMode{
    "startWorkingMode", [](Kesto& kesto, FakeKesto&) { return kesto.startWorkingMode(); },
    LinkCall::StartWorkingMode};
inline constexpr DeviceAction stopWorkingMode{
    "stopWorkingMode", [](Kesto& kesto, FakeKesto&) { return kesto.stopWorkingMode(); },
    LinkCall::StopWorkingMode};
inline constexpr DeviceAction setOutputs{
    "setOutputs", [](Kesto& kesto, FakeKesto&) { return kesto.setOutputs({}); }, LinkCall::SetOutputs};
inline constexpr DeviceAction stopOutputs{
    "stopOutputs", [](Kesto& kesto, FakeKesto&) { return kesto.stopOutputs(); }, LinkCall::StopOutputs};
inline constexpr DeviceAction disconnect{"disconnect", [](Kesto& kesto, FakeKesto&) {
                                             kesto.disconnect();
                                             return Kes::Result(true);
                                         }};
inline constexpr DeviceAction fault{"a fault", [](Kesto&, FakeKesto& fake) {
                                        KesDriver::KesAvary overload;
                                        overload.kestoType = 3;
                                        overload.serialNumber = 17;
                                        overload.channels = {{"IA", false, false, true}};
                                        return happen(fake.report(overload));
                                    }};
inline constexpr DeviceAction loss{
    "a loss", [](Kesto&, FakeKesto& fake) { return happen(fake.reportConnectionLost()); }};
inline constexpr DeviceAction nonsense{
    "nonsense", [](Kesto&, FakeKesto& fake) {
        const KesDriver::InputEvent impossible{4000000000U, true, KesDriver::DeviceTime(1), {}};
        return happen(fake.report(impossible));
    }};

} // namespace Actions
} // namespace KesTest
