#include <KesDriver/simulated/detail/SimulatedNonsense.h>

#include <limits>

namespace KesDriver::SimulatedNonsense {

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

constexpr const char* garbage = "\xFF\xFE\x01 nonsense\n\xC0";

KestoIdentifer identifer()
{
    return {std::numeric_limits<std::uint16_t>::max(), std::numeric_limits<std::uint32_t>::max()};
}

void garble(InputEvent& event)
{
    event.input += 1000;
    event.time = -event.time;
    event.step = std::numeric_limits<std::size_t>::max();
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

void garble(KesAvary& avary)
{
    avary = {};
    avary.kestoType = identifer().getType();
    avary.serialNumber = identifer().getSerialNumber();
    avary.channels.assign(5000, {std::string(10000, '\xFF'), true, true, true});
}

void garble(ConnectionLost&) {}

} // namespace

KestoIdentity identity()
{
    return {identifer(), std::string(100000, '\xFF'), garbage};
}

KestoState state()
{
    return {true, true, notANumber, garbage};
}

OutputLimits limits()
{
    OutputLimits limits;
    limits.maximumAmperes = notANumber;
    limits.maximumVolts = infinity;
    limits.minimumHertz = -1.0;
    limits.maximumHertz = notANumber;
    limits.binaryInputs = std::numeric_limits<unsigned>::max();
    limits.binaryOutputs = std::numeric_limits<unsigned>::max();
    limits.maximumVoltAmperes = -infinity;
    limits.continuousAmperes = notANumber;
    limits.overloadDuration = DeviceTime::min();
    limits.maximumSteps = 0;
    limits.releaseTime = std::chrono::milliseconds(-1);
    return limits;
}

DeviceTime time()
{
    return DeviceTime(-1);
}

ClockReading clockReading()
{
    return {DeviceTime::min(), CommonTime::max()};
}

std::vector<Report> events()
{
    return {
        InputEvent{0, true, DeviceTime(0)},
        InputEvent{4000000000U, true, DeviceTime::max()},
        InputEvent{1, true, DeviceTime(-5)},
        StepEvent{77, DeviceTime::min()},
    };
}

Report garble(Report report)
{
    std::visit([](auto& event) { garble(event); }, report);
    return report;
}

} // namespace KesDriver::SimulatedNonsense
