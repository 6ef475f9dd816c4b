#pragma once

#include <KesDriver/IKestoNetwork.h>
#include <KesDriver/simulated/ISimulatedTestObject.h>

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace Simulator {

/// The command line of the simulator. A value.
struct SimulatorOptions {
    static constexpr unsigned mostDevices = 250;

    /// The options, or why they are not possible. Asked for help, it prints it and ends the process.
    static std::variant<SimulatorOptions, std::string> parse(int argc, char** argv);

    /// Of the first device; each one after it has the next address.
    KesDriver::NetAddress address{KesDriver::NetAddress::Bytes{127, 0, 1, 1}};
    std::uint16_t port = 5025;
    unsigned devices = 1;
    std::uint16_t type = 3;
    std::uint32_t serialNumber = 1;
    double speed = 1.0;
    /// Of the relay at each device; empty for none.
    std::string relayKind;
    std::vector<std::string> relaySettings;
    /// Let searches in the local network find the devices.
    bool announce = false;
    bool log = false;
    bool version = false;
};

} // namespace Simulator
