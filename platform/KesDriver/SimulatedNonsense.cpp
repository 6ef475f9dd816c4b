#include <KesDriver/SimulatedNonsense.h>

#include <limits>

namespace KesDriver::SimulatedNonsense {

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

void garble(InputEvent& event)
{
    event.input += 1000;
    event.time = -event.time;
}

void garble(StepEvent& event)
{
    event.step = std::numeric_limits<std::size_t>::max() - event.step;
    event.time = DeviceTime::min();
}

void garble(SequenceEvent& event)
{
    event.time = time();
}

} // namespace

KestoIdentifer identifer()
{
    return {std::numeric_limits<std::uint16_t>::max(), std::numeric_limits<std::uint32_t>::max()};
}

KestoState state()
{
    return {true, true, notANumber, "\xFF\xFE\x01 nonsense\n\xC0"};
}

OutputLimits limits()
{
    return {notANumber, infinity, -1.0, notANumber, std::numeric_limits<unsigned>::max()};
}

DeviceTime time()
{
    return DeviceTime(-1);
}

KesAvary avary()
{
    KesAvary avary;
    avary.kestoType = identifer().getType();
    avary.serialNumber = identifer().getSerialNumber();
    avary.channels.assign(5000, {std::string(10000, '\xFF'), true, true, true});
    return avary;
}

std::vector<SimulatedPort::Report> events()
{
    return {
        [](IKestoLinkListener& listener) {
            listener.onInput({0, true, DeviceTime(0)});
        },
        [](IKestoLinkListener& listener) {
            listener.onInput({4000000000U, true, DeviceTime::max()});
        },
        [](IKestoLinkListener& listener) {
            listener.onInput({1, true, DeviceTime(-5)});
        },
        [](IKestoLinkListener& listener) {
            listener.onStep({77, DeviceTime::min()});
        },
    };
}

SimulatedOutput::Report garble(SimulatedOutput::Report report)
{
    std::visit([](auto& event) { garble(event); }, report);
    return report;
}

} // namespace KesDriver::SimulatedNonsense
