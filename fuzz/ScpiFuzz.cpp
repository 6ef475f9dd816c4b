// What a device on the network receives.

#include "Require.h"

#include <KesDriver/scpi/Error.h>
#include <KesDriver/scpi/LineReader.h>
#include <KesDriver/scpi/Unit.h>
#include <KesDriver/simulated/serving/DeviceServer.h>

#include <cerrno>
#include <cstdint>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace KesDriver;

/// The messages do not depend on the parts in which the bytes come.
std::vector<std::string> readMessages(const std::string& bytes, std::size_t part)
{
    Scpi::LineReader reader;
    std::vector<std::string> messages;
    for (std::size_t begin = 0; begin < bytes.size() && !reader.isOverrun(); begin += part) {
        reader.add(std::string_view(bytes).substr(begin, part));
        while (auto message = reader.next())
            messages.push_back(*message);
    }
    return messages;
}

void checkUnit(const Scpi::Unit& unit)
{
    require(!unit.header.empty(), "a unit has a header");
    for (const auto& parameter : unit.parameters)
        require(parameter.unit.empty() || parameter.kind == Scpi::Parameter::Kind::Number,
                "units are of numbers");
}

void checkMessage(const std::string& message)
{
    Scpi::UnitReader reader(message);
    std::size_t units = 0;
    for (bool isMore = true; isMore;) {
        require(units++ <= message.size() + 1, "a message ends");
        try {
            Scpi::Unit unit;
            isMore = reader.next(unit);
            if (isMore)
                checkUnit(unit);
        } catch (const Scpi::Error& error) {
            require(error.getCode() < Scpi::ErrorCode::None, "an error has a code");
        }
    }
}

void drain(int descriptor)
{
    char bytes[4096];
    // The fuzzer's own timer interrupts.
    while (recv(descriptor, bytes, sizeof bytes, 0) > 0 || errno == EINTR)
        errno = 0;
}

/// Says it to a device that already does something, and looks what is left when the session is over.
void talk(const std::string& bytes)
{
    const auto device = std::make_shared<SimulatedKesto>(KestoIdentifer(3, 17));
    DeviceServer server(device);
    const int client = server.connect();
    const auto all = "SYST:CONT:TAKE \"fuzz\";:OUTP ON;:OUTP:AUX ON,24;:CURR 1\n" + bytes + '\n';
    // More than a socket takes at once is not sent: nobody reads meanwhile.
    require(send(client, all.data(), all.size(), MSG_NOSIGNAL | MSG_DONTWAIT) >= 0, "it is sent");
    shutdown(client, SHUT_WR);
    errno = 0;
    drain(client);
    close(client);
    require(!device->isWorking(), "a device without its controller is off");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const auto messages = readMessages(bytes, 1);
    require(messages == readMessages(bytes, bytes.size() + 1), "parts play no role");
    for (const auto& message : messages)
        checkMessage(message);
    talk(bytes);
    return 0;
}
