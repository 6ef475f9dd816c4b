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
    /// The addresses of all devices differ in the last byte alone.
    static constexpr unsigned mostDevices = 250;

    /// The options, or why they are not possible, as a text for the user. Asked for help, it prints it and
    /// ends the process. Sets the language of the process to that of the user first.
    static std::variant<SimulatorOptions, std::string> parse(int argc, char** argv);

    /// Of the first device; each one after it has the next address.
    KesDriver::NetAddress address{KesDriver::NetAddress::Bytes{127, 0, 1, 1}};
    /// Of every device, 0 to 65535; 0: a free one for each.
    std::uint16_t port = 5025;
    unsigned devices = 1;
    std::uint16_t type = 3;
    /// Of the first device, 1 to 999999999; each one after it has the next number.
    std::uint32_t serialNumber = 1;
    /// Simulated seconds per real second, 0.001 to 100000.
    double speed = 1.0;
    /// Of the relay at each device; empty for none.
    std::string relayKind;
    std::vector<std::string> relaySettings;
    /// Let searches in the local network find the devices.
    bool announce = false;
    /// To standard error: what the devices receive and answer.
    bool log = false;
    bool version = false;
};

} // namespace Simulator
