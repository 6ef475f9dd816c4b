// Whatever happens to the cable or the device, at whatever moment: the outputs are off in time as the device
// itself says, the user is told once, by the device's name or address, and the next run works. What comes of
// each pair is the table of docs/faults.md.

#include "NetworkRig.h"

#include <support/TemporaryHome.h>

#include <cstdlib>
#include <future>
#include <semaphore>

namespace KesTest {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Lines = std::vector<std::string>;

/// Nothing may be on after it.
constexpr auto longestOn = 3s;

using Act = std::function<void(NetworkRig&)>;

struct Fault {
    const char* name;
    Act begin;
    /// Besides `FaultyWire::mend`.
    Act end = [](NetworkRig&) {};
};

/// The field of an event after its number, of an event of that kind; every line as it is otherwise.
std::string replaceField(const std::string& line, unsigned field, const std::string& value)
{
    if (!line.starts_with('!'))
        return line;
    std::size_t begin = 0;
    for (unsigned i = 0; i < field && begin != std::string::npos; ++i)
        begin = line.find(',', begin) + 1;
    return line.substr(0, begin) + value + line.substr(std::min(line.find(',', begin), line.size()));
}

/// An event that the fault can act upon.
void touchInput(NetworkRig& rig)
{
    rig.device()->setInput(1, true);
    rig.device()->setInput(1, false);
}

Fault onEvents(const char* name, FaultyWire::Change change)
{
    return {name, [change = std::move(change)](NetworkRig& rig) {
                rig.wire().change(change);
                touchInput(rig);
            }};
}

Fault onAnswers(const char* name, const FaultyWire::Change& change)
{
    const auto changed = [change](const std::string& line) {
        return line.starts_with('!') ? Lines{line} : change(line);
    };
    return {name, [changed](NetworkRig& rig) { rig.wire().change(changed); }};
}

template <typename... Args>
Fault inDevice(const char* name, void (KesDriver::SimulatedKesto::*fail)(Args...), Args... args)
{
    return {name, [=](NetworkRig& rig) { ((*rig.device()).*fail)(args...); },
            [](NetworkRig& rig) { rig.device()->clearFaults(); }};
}

/// Each cable holds back an event of its own.
void reorder(NetworkRig& rig)
{
    rig.wire().change([held = std::make_shared<std::string>()](const std::string& line) -> Lines {
        if (!line.starts_with('!'))
            return {line};
        if (!held->empty())
            return {line, std::exchange(*held, {})};
        *held = line;
        return {};
    });
    touchInput(rig);
}

Lines speakVersionTwo(std::string line)
{
    if (const auto at = line.find("1.0;"); at != std::string::npos)
        line.replace(at, 3, "2.0");
    return {line};
}

std::vector<Fault> getFaults()
{
    using Device = KesDriver::SimulatedKesto;
    using Line = const std::string&;
    const auto otherVersion = onAnswers("other protocol version", speakVersionTwo);
    return {
        {"connection refused, cut off before", [](auto& rig) { rig.wire().refuse(), rig.wire().drop(); }},
        {"connect never answered, cut off before", [](auto& rig) { rig.wire().ignore(), rig.wire().drop(); }},
        {"connection dropped", [](auto& rig) { rig.wire().drop(); }},
        {"half-open", [](auto& rig) { rig.wire().freeze(); }},
        {"nothing is read", [](auto& rig) { rig.wire().clog(); }},
        {"silent", [](auto& rig) { rig.device()->setSilent(true); },
         [](auto& rig) { rig.device()->setSilent(false); }},
        {"answers after the time-out", [](auto& rig) { rig.wire().delay(2500ms); }},
        {"partial lines", [](auto& rig) { rig.wire().cutUp(); }},
        {"slow, several lines at once", [](auto& rig) { rig.wire().delay(150ms); }},
        {"garbage bytes", [](auto& rig) { rig.wire().insert("\x01\xFF\x80 nonsense \n"); }},
        onAnswers("wrong answer", [](Line) { return Lines{"1;0,\"No error\";7"}; }),
        onAnswers("every answer twice",
                  [](Line line) {
                      return Lines{line, line};
                  }),
        onEvents("duplicated events",
                 [](Line line) {
                     return line.starts_with('!') ? Lines{line, line} : Lines{line};
                 }),
        {"reordered events", reorder},
        onEvents("time that jumps back", [](Line line) { return Lines{replaceField(line, 1, "1")}; }),
        onEvents("values out of range", [](Line line) { return Lines{replaceField(line, 3, "4000000000")}; }),
        onEvents("values not finite", [](Line line) { return Lines{replaceField(line, 1, "NAN")}; }),
        {"device reboots", [](auto& rig) { rig.reboot(); }},
        inDevice("overload", &Device::simulateOverload, 0U),
        inDevice("overheat", &Device::simulateOverheat, 1U),
        inDevice("channel lost", &Device::simulateChannelLost, 2U),
        inDevice("emergency button", &Device::simulateQuickShutdown),
        {"taken over by another program", [](auto& rig) { rig.wire().drop(), rig.takeOver(); },
         [](auto& rig) { rig.letGo(); }},
        {otherVersion.name, [=](auto& rig) { rig.wire().drop(), otherVersion.begin(rig); }},
    };
}

/// What a moment makes of a fault: it begins at the moment, and this goes on until it has told.
struct Moment {
    const char* name;
    std::function<bool(NetworkRig&, const std::function<void()>& begin)> run;
    /// Whether the fault is noticed before the end of the moment is chance.
    bool isRace = false;
};

std::vector<Moment> getMoments()
{
    using Begin = std::function<void()>;
    constexpr auto length = 4s;
    return {
        {"connect", [](NetworkRig& rig, const Begin& begin) { return begin(), rig.run({}); }},
        {"prepare",
         [](NetworkRig& rig, const Begin& begin) {
             (void)rig.hardware().prepare();
             return rig.run({.beforePrepare = begin});
         }},
        {"start", [](NetworkRig& rig, const Begin& begin) { return rig.run({.beforeStart = begin}); }},
        {"steady", [=](NetworkRig& rig,
                       const Begin& begin) { return rig.run({.withOutputs = begin, .length = length}); }},
        {"ramp",
         [=](NetworkRig& rig, const Begin& begin) {
             return rig.run({.withOutputs = begin, .isRamp = true, .length = length});
         }},
        {"sending",
         [=](NetworkRig& rig, const Begin& begin) {
             return rig.run({.isRamp = true, .steps = 10000, .whileSending = begin, .length = length});
         }},
        {"stop", [](NetworkRig& rig, const Begin& begin) { return rig.run({.withOutputs = begin}); }},
        {"disconnect",
         [](NetworkRig& rig, const Begin& begin) {
             const bool isWhole = rig.run({});
             begin();
             rig.disconnect();
             return isWhole;
         },
         true},
        {"idle",
         [](NetworkRig& rig, const Begin& begin) {
             (void)rig.hardware().prepare();
             begin();
             // Also after it has been noticed.
             for (const auto end = Clock::now() + 3s; Clock::now() < end;) {
                 (void)rig.kesto().updateState();
                 std::this_thread::sleep_for(100ms);
             }
             return true;
         }},
    };
}

struct Outcome {
    std::string cell;
    std::string defect;
};

Outcome tryPair(unsigned number, const Fault& fault, const Moment& moment)
{
    NetworkRig rig(number);
    std::future<std::optional<std::chrono::milliseconds>> off;
    const bool isWhole = moment.run(rig, [&] {
        fault.begin(rig);
        off = std::async(std::launch::async, [&rig] { return rig.waitForOutputsOff(); });
    });
    Outcome outcome;
    const auto complain = [&](const std::string& text) { outcome.defect += text + "; "; };
    std::optional<std::chrono::milliseconds> offTime;
    if (off.valid())
        offTime = off.get();
    else
        complain("the moment has not come");
    std::this_thread::sleep_for(50ms);
    auto messages = rig.takeMessages();
    // What has ended a run is told, and by a thread of its own.
    for (const auto end = Clock::now() + 2s;
         (!isWhole || !moment.isRace) && messages.empty() && Clock::now() < end;
         messages = rig.takeMessages())
        std::this_thread::sleep_for(10ms);
    outcome.cell = moment.isRace ? "off" : messages.empty() ? "undisturbed" : "off, reported";
    if (!messages.empty() && (!offTime || *offTime > longestOn))
        complain("on after " + std::to_string(offTime ? offTime->count() : -1) + " ms");
    if (messages.size() > 1)
        complain("told again [" + messages.back() + "]");
    for (const auto& text : messages)
        if (text.find(rig.getAddress()) == std::string::npos && text.find("No. 00001") == std::string::npos)
            complain("nameless [" + text + "]");
    if (!isWhole && messages.empty())
        complain("ended without a word");
    if (rig.hardware().isOutputRunning())
        complain("still running");
    fault.end(rig);
    rig.wire().mend();
    if (!rig.settle())
        complain("the device does not get free");
    if (const auto late = rig.takeMessages(); !late.empty() && !moment.isRace)
        complain("told late [" + late.front() + "]");
    if (!rig.run({.isRamp = true, .length = 50ms}))
        complain("the next run fails");
    if (const auto others = rig.takeMessages(); !others.empty() && !moment.isRace)
        complain("the next run tells [" + others.front() + "]");
    return outcome;
}

TEST(NetworkFaults, LeaveTheOutputsOffTheUserToldAndTheNextRunPossible)
{
    const auto faults = getFaults();
    const auto moments = getMoments();
    // They mostly wait; more of them at once keep a busy machine from answering in time.
    std::counting_semaphore<> places(16);
    std::vector<std::vector<std::future<Outcome>>> outcomes(faults.size());
    const auto begin = [&](std::size_t row, std::size_t column) {
        const auto number = static_cast<unsigned>(row * moments.size() + column);
        places.acquire();
        return std::async(std::launch::async, [&, row, column, number] {
            Outcome outcome;
            try {
                outcome = tryPair(number, faults[row], moments[column]);
            } catch (const std::exception& error) {
                outcome.defect = error.what();
            }
            places.release();
            return outcome;
        });
    };
    for (std::size_t i = 0; i < faults.size(); ++i)
        for (std::size_t j = 0; j < moments.size(); ++j)
            outcomes[i].push_back(begin(i, j));
    std::string table = "| fault |", line = "\n|---|";
    for (const auto& moment : moments) {
        table += std::string(" ") + moment.name + " |";
        line += "---|";
    }
    table += line;
    for (std::size_t i = 0; i < faults.size(); ++i) {
        table += std::string("\n| ") + faults[i].name + " |";
        for (std::size_t j = 0; j < moments.size(); ++j) {
            const auto outcome = outcomes[i][j].get();
            EXPECT_EQ(outcome.defect, "") << faults[i].name << ", " << moments[j].name;
            table += ' ' + outcome.cell + " |";
        }
    }
    const std::string path = KES_DOCUMENTS "/faults.md", mark = "<!-- network faults -->\n";
    auto page = readFile(path);
    const auto place = page.find(mark) + mark.size();
    const auto length = page.find("\n<!-- end -->", place) - place;
    if (std::getenv("KES_WRITE_DOCUMENTS"))
        writeFile(path, page.replace(place, length, table));
    else
        EXPECT_EQ(page.substr(place, length), table);
}

} // namespace
} // namespace KesTest
