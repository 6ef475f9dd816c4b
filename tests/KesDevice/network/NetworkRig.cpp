#include "NetworkRig.h"

#include <KesCommon/ObjectErrorHelper.h>
#include <KesDriver/KesAvary.h>

#include <stdexcept>

namespace KesTest {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

namespace {

/// Nothing else moves there.
constexpr unsigned markerInput = 8;

/// Below those that the system gives away.
std::uint16_t getPort()
{
    return static_cast<std::uint16_t>(10000 + getpid() % 20000);
}

std::string loopback(unsigned network, unsigned number)
{
    return "127." + std::to_string(network) + "." + std::to_string(number / 250) + "." +
           std::to_string(number % 250 + 1);
}

KesDriver::NetAddress toAddress(const std::string& text)
{
    return KesDriver::NetAddress::parse(text).value();
}

} // namespace

NetworkRig::NetworkRig(unsigned number) : _address(loopback(9, number)), _deviceAddress(loopback(10, number))
{
    _serve();
    _wire = std::make_unique<FaultyWire>(_address, _deviceAddress, getPort());
    _hardware = KesDevice::HardwareManager::create(std::make_shared<KesDriver::TcpNetwork>(getPort()));
    _hardware->setIsStopOnFault(true);
    _hardware->signalAvary.connect(
        [this](KesDriver::KesAvary& avary) { _tell("No. 0000" + std::to_string(avary.serialNumber)); });
    _hardware->signalKestoState.connect([this](KesDevice::Kesto*, const char* text) { _tell(text); });
    (void)_hardware->addKesto(toAddress(_address));
    _kesto = _hardware->getKestos().find(toAddress(_address));
    _kesto->signalReport.connect([this](const KesDriver::Report& report) {
        const auto* input = std::get_if<KesDriver::InputEvent>(&report);
        _markersHeard += input && input->input == markerInput && !input->isClosed ? 1 : 0;
    });
}

NetworkRig::~NetworkRig()
{
    _rival.reset();
    _kesto.reset();
    _hardware.reset();
    _wire.reset();
}

std::shared_ptr<KesDriver::SimulatedKesto> NetworkRig::device() const
{
    std::lock_guard lock(_mutex);
    return _device;
}

void NetworkRig::_serve()
{
    auto device = std::make_shared<KesDriver::SimulatedKesto>(KesDriver::KestoIdentifer(3, 1));
    _server = std::make_unique<KesDriver::DeviceServer>(device);
    {
        std::lock_guard lock(_mutex);
        _device = std::move(device);
    }
    if (const auto result = _server->listen(_deviceAddress, getPort()); !result)
        throw std::runtime_error(Kes::ObjectErrorHelper::toDisplayString({result.getError()}));
}

void NetworkRig::reboot()
{
    _server.reset();
    _serve();
}

void NetworkRig::takeOver()
{
    _rival = KesDriver::TcpNetwork(getPort()).createLink(toAddress(_deviceAddress));
    KesDriver::ConnectionNumber connection = 0;
    waitUntil([&] { return static_cast<bool>(_rival->connect(connection)); });
}

void NetworkRig::_tell(const std::string& text)
{
    std::lock_guard lock(_mutex);
    _messages.push_back(text);
}

bool NetworkRig::_note(const Kes::Result& result)
{
    if (!result)
        _tell(Kes::ObjectErrorHelper::toDisplayString({result.getError()}));
    return static_cast<bool>(result);
}

bool NetworkRig::run(const Moments& moments)
{
    {
        const KesDevice::HardwareManager::ToldByResults told(*_hardware);
        moments.beforePrepare();
        auto result = _hardware->prepare();
        if (result) {
            moments.beforeStart();
            result = _hardware->startWorkingMode();
        }
        if (!_note(result))
            return false;
    }
    KesDriver::OutputStep step;
    step.outputs.currents[0].magnitude = 1.0;
    step.duration = 1min;
    if (moments.isRamp)
        step.ramp.currents[0].magnitude = 0.01;
    std::jthread meanwhile;
    if (moments.whileSending)
        meanwhile = std::jthread([&] {
            std::this_thread::sleep_for(5ms);
            moments.whileSending();
        });
    // What goes wrong with it is told as a fault of the device.
    bool isWhole =
        static_cast<bool>(moments.isRamp ? _kesto->runSequence(KesDriver::OutputSequence(moments.steps, step))
                                         : _kesto->setOutputs(step.outputs));
    if (meanwhile.joinable())
        meanwhile.join();
    if (isWhole)
        moments.withOutputs();
    for (const auto end = steady_clock::now() + moments.length; isWhole && steady_clock::now() < end;) {
        std::this_thread::sleep_for(2ms);
        isWhole = static_cast<bool>(_hardware->checkOutput());
    }
    const bool isStopped = _note(_hardware->stopWorkingMode());
    return isWhole && isStopped;
}

void NetworkRig::disconnect()
{
    _note(_hardware->disconnect());
}

bool NetworkRig::settle()
{
    // It comes behind all that has been reported before.
    const unsigned heard = _markersHeard;
    device()->setInput(markerInput, true);
    device()->setInput(markerInput, false);
    TestClient client(_deviceAddress, getPort());
    return waitUntil([&] {
        return _kesto->isConnected() ? _markersHeard > heard : client.ask("SYST:CONT:OWN?") == "\"\",\"\"";
    });
}

std::optional<std::chrono::milliseconds> NetworkRig::waitForOutputsOff() const
{
    const auto begin = steady_clock::now();
    if (!waitUntil([this] { return device()->getOutputs() == KesDriver::OutputState(); }))
        return std::nullopt;
    return std::chrono::duration_cast<std::chrono::milliseconds>(steady_clock::now() - begin);
}

std::vector<std::string> NetworkRig::takeMessages()
{
    std::lock_guard lock(_mutex);
    return std::exchange(_messages, {});
}

} // namespace KesTest
