// The part of a configuration that starts sequences on several devices at one moment.

#include <KesDevice/HardwareManager.h>

#include <KesCommon/StringHelper.h>
#include <KesDevice/HardwareManagerText.h>
#include <KesDevice/SyncedRun.h>
#include <KesDevice/detail/HardwareStatus.h>
#include <KesDevice/detail/OperationTurn.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <utility>

namespace KesDevice {

using namespace KesDriver;

namespace {

using Clock = std::chrono::steady_clock;

/// How the devices are wired for the modes that start by a contact; what the modes' infos ask for.
constexpr unsigned startInput = 8;
constexpr std::uint32_t startOutput = 1;

/// How long after the last clock has been read the common moment comes; the devices have to hear of it first.
constexpr std::chrono::milliseconds lead{300};

Kes::Result failure(const char* key)
{
    return Kes::Result::failure(lng::HardwareManager::get(key));
}

/// Which moment each device starts at; the first one last, in a mode in which it starts the others.
StartMoment contactMoment(const SyncMode& mode, std::size_t number)
{
    const bool isStarter = mode.getKind() == SyncModeKind::BinaryOutput && number == 0;
    return isStarter ? StartMoment{} : StartMoment{std::nullopt, startInput};
}

} // namespace

/// The devices that take part, and what each of them runs.
struct HardwareManager::SyncedStart {
    const SyncMode& mode;
    Kestos kestos;
    std::vector<std::size_t> numbers;
    std::vector<OutputSequence> sequences;

    std::size_t numberOf(const Kesto& kesto) const
    {
        const auto found = std::find_if(kestos.begin(), kestos.end(),
                                        [&](const auto& other) { return other.get() == &kesto; });
        return static_cast<std::size_t>(found - kestos.begin());
    }
};

Kes::Result HardwareManager::startSequences(const std::vector<OutputSequence>& sequences,
                                            std::shared_ptr<SyncedRun>& run)
{
    const OperationTurn::Hold turn(*_turn);
    SyncedStart start{_syncManager.getActiveMode(), {}, {}, {}};
    if (auto result = _planStart(sequences, start); !result)
        return result;
    const Status status(*this, lng::HardwareManager::get("Status.arming"));
    std::shared_ptr<SyncedRun> made(
        new SyncedRun(start.kestos.size() > 1 ? start.mode.getUncertainty() : std::chrono::microseconds(0)));
    auto result =
        _toResult("Errors.Sync.start", start.kestos, _onEach(start.kestos, status, [&](Kesto& kesto) {
                      return kesto.armSequence(start.sequences[start.numberOf(kesto)]);
                  }));
    // Not earlier: until a device has armed its sequence it may still report the end of the one before.
    made->_begin(start.kestos, start.numbers);
    if (result)
        result = _trigger(start, status);
    // Otherwise it goes here, and stops what has begun or waits for its start.
    if (result)
        run = std::move(made);
    return result;
}

Kes::Result HardwareManager::_planStart(const std::vector<OutputSequence>& sequences,
                                        SyncedStart& start) const
{
    if (!_running)
        return failure("Errors.Sync.outputOff");
    if (!start.mode.isSeqSupported())
        return Kes::Result::failure(Kes::StringHelper::format(
            lng::HardwareManager::get("Errors.Sync.noSequences"), start.mode.getName()));
    const auto kestos = _kestos.lease();
    if (sequences.size() > kestos.size())
        return Kes::Result::failure(Kes::StringHelper::format(
            lng::HardwareManager::get("Errors.Sync.tooFewDevices"), sequences.size(), kestos.size()));
    for (std::size_t i = 0; i < sequences.size(); ++i) {
        if (sequences[i].empty())
            continue;
        start.kestos.push_back(kestos[i]);
        start.numbers.push_back(i);
        start.sequences.push_back(sequences[i]);
    }
    if (start.kestos.empty())
        return failure("Errors.Sync.nothingToRun");
    if (start.kestos.size() == 1)
        return true;
    if (start.mode.getKind() == SyncModeKind::None)
        return failure("Errors.Sync.noneForSeveral");
    if (start.mode.getKind() != SyncModeKind::BinaryOutput)
        return true;
    if (start.numbers.front() != 0)
        return failure("Errors.Sync.firstNeeded");
    for (auto& step : start.sequences.front())
        step.outputs.binaryOutputs |= startOutput;
    return true;
}

Kes::Result HardwareManager::_trigger(const SyncedStart& start, const Status& status)
{
    constexpr const char* error = "Errors.Sync.start";
    if (start.kestos.size() == 1)
        return _toResult(error, start.kestos,
                         _onEach(start.kestos, status, [](Kesto& kesto) { return kesto.startArmed({}); }));
    if (!start.mode.hasCommonClock()) {
        // Whoever waits for the contact has to do so before the one that closes it begins.
        auto waiting = start.kestos;
        Kestos starter;
        if (start.mode.getKind() == SyncModeKind::BinaryOutput) {
            starter.push_back(waiting.front());
            waiting.erase(waiting.begin());
        }
        const auto trigger = [&](Kesto& kesto) {
            return kesto.startArmed(contactMoment(start.mode, start.numberOf(kesto)));
        };
        auto result = _toResult(error, waiting, _onEach(waiting, status, trigger));
        return result ? _toResult(error, starter, _onEach(starter, status, trigger)) : result;
    }
    const auto begun = Clock::now();
    std::atomic<CommonTime::rep> latest{0};
    auto result = _toResult(error, start.kestos, _onEach(start.kestos, status, [&](Kesto& kesto) {
                                ClockReading reading;
                                auto read = kesto.readClock(reading);
                                auto known = latest.load();
                                while (read && known < reading.common.count() &&
                                       !latest.compare_exchange_weak(known, reading.common.count())) {
                                }
                                return read;
                            }));
    if (!result)
        return result;
    // As long again as the devices needed to answer this time.
    const auto answer = std::chrono::duration_cast<CommonTime>(Clock::now() - begun);
    const auto moment = CommonTime(latest) + std::chrono::duration_cast<CommonTime>(lead) + 2 * answer;
    return _toResult(error, start.kestos, _onEach(start.kestos, status, [&](Kesto& kesto) {
                         return kesto.startArmed({moment, std::nullopt});
                     }));
}

} // namespace KesDevice
