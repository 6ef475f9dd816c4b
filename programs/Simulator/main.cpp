// Simulated devices as a program of their own.

#include <Simulator/SimulatorOptions.h>
#include <Simulator/SimulatorText.h>

#include <KesCommon/Language.h>
#include <KesCommon/ObjectError.h>
#include <KesCommon/StringHelper.h>
#include <KesDriver/net/ServiceAnnouncement.h>
#include <KesDriver/simulated/relays/RelayCatalog.h>
#include <KesDriver/simulated/serving/DeviceServer.h>

#include <csignal>
#include <cstdio>
#include <mutex>
#include <system_error>

namespace {

using KesDriver::DeviceServer;
using KesDriver::NetAddress;
using KesDriver::ServiceAnnouncement;
using KesDriver::SimulatedKesto;

/// What stands on the bench; the announcements end first.
struct Bench {
    std::vector<std::unique_ptr<DeviceServer>> servers;
    std::vector<std::unique_ptr<ServiceAnnouncement>> announcements;
};

enum ExitCode { Success = 0, CannotListen = 1, WrongOptions = 2 };

void tell(const std::string& text)
{
    std::fprintf(stderr, "%s\n", text.c_str());
}

/// Those that end the program. Every thread that is made afterwards leaves them to `waitForEnd`.
sigset_t blockEndSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&signals, signal);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

NetAddress getAddress(const NetAddress& first, unsigned index)
{
    auto bytes = first.getBytes();
    bytes.back() = static_cast<std::uint8_t>(bytes.back() + index);
    return NetAddress(bytes);
}

DeviceServer::Log makeLog()
{
    return [](const std::string& line) {
        static std::mutex mutex;
        std::lock_guard lock(mutex);
        tell(line);
    };
}

Kes::Result makeDevice(const Simulator::SimulatorOptions& options, unsigned index,
                       std::shared_ptr<SimulatedKesto>& device)
{
    device = std::make_shared<SimulatedKesto>(
        KesDriver::KestoIdentifer(options.type, options.serialNumber + index));
    device->setSpeed(options.speed);
    if (options.relayKind.empty())
        return true;
    std::shared_ptr<KesDriver::ISimulatedTestObject> relay;
    auto result = KesDriver::RelayCatalog::make(options.relayKind, options.relaySettings, relay);
    if (result)
        device->connectTestObject(std::move(relay));
    return result;
}

/// Says where it listens, for people and for programs that start this one.
void tellPlace(const KesDriver::KestoIdentifer& device, const std::string& address, unsigned port)
{
    std::printf("%s %05u %s:%u\n", device.getTypeName().c_str(), device.getSerialNumber(), address.c_str(),
                port);
    std::fflush(stdout);
}

int serve(const Simulator::SimulatorOptions& options, Bench& bench)
{
    for (unsigned index = 0; index < options.devices; ++index) {
        std::shared_ptr<SimulatedKesto> device;
        if (const auto result = makeDevice(options, index, device); !result) {
            tell(result.getError()->getMessage());
            return WrongOptions;
        }
        const auto address = getAddress(options.address, index);
        auto& server = *bench.servers.emplace_back(
            std::make_unique<DeviceServer>(device, options.log ? makeLog() : DeviceServer::Log()));
        if (const auto result = server.listen(address.to_string(), options.port); !result) {
            tell(result.getError()->getMessage());
            return CannotListen;
        }
        if (options.announce)
            bench.announcements.push_back(std::make_unique<ServiceAnnouncement>(address, server.getPort(),
                                                                                device->getIdentity(), true));
        tellPlace(device->getIdentifer(), address.to_string(), server.getPort());
    }
    return Success;
}

} // namespace

int main(int argc, char** argv)
{
    const auto parsed = Simulator::SimulatorOptions::parse(argc, argv);
    if (const auto* const error = std::get_if<std::string>(&parsed)) {
        tell(*error);
        return WrongOptions;
    }
    const auto& options = std::get<Simulator::SimulatorOptions>(parsed);
    if (options.version) {
        std::printf("%s\n", KES_VERSION);
        return Success;
    }
    if (options.address.getBytes().front() != 127)
        tell(Kes::StringHelper::format(lng::Simulator::get("warning.open"), options.address.to_string()));
    const auto signals = blockEndSignals();
    // From here on it talks to programs.
    lng::language = lng::English;
    Bench bench;
    try {
        const int code = serve(options, bench);
        int signal = 0;
        if (code == Success)
            sigwait(&signals, &signal);
        return code;
    } catch (const std::system_error& error) {
        // Each device takes a thread or more.
        tell(error.what());
        return CannotListen;
    }
}
