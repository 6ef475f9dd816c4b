// Whatever happens to the cable or the device, at whatever moment: the outputs are off in time as the device
// itself says, the user is told once, by the device's name or address, and the next run works. What comes of
// each pair is the table of docs/faults.md.

#include "FaultsPage.h"
#include "NetworkRig.h"

#include <gmock/gmock.h>

#include <future>
#include <semaphore>
#include <sstream>

namespace KesTest {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Lines = std::vector<std::string>;

/// Nothing may be on after it.
constexpr auto longestOn = 3s;

struct Fault {
    const char* name;
    std::function<void(NetworkRig&)> begin;
    /// Besides `FaultyWire::mend`.
    std::function<void(NetworkRig&)> end = [](NetworkRig&) {};
};

FaultyWire::Change onAnswers(const std::function<Lines(const std::string&)>& change)
{
    return [change](const std::string& line) { return line.starts_with('!') ? Lines{line} : change(line); };
}

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

/// Each cable holds back an event of its own.
FaultyWire::Change reorder()
{
    return [held = std::make_shared<std::string>()](const std::string& line) -> Lines {
        if (!line.starts_with('!'))
            return {line};
        if (held->empty()) {
            *held = line;
            return {};
        }
        return {line, std::exchange(*held, {})};
    };
}

std::vector<Fault> getFaults()
{
    return {
        {"connection refused, cut off before",
         [](NetworkRig& rig) { rig.wire().refuse(), rig.wire().drop(); }},
        {"connect never answered, cut off before",
         [](NetworkRig& rig) { rig.wire().ignore(), rig.wire().drop(); }},
        {"connection dropped", [](NetworkRig& rig) { rig.wire().drop(); }},
        {"half-open", [](NetworkRig& rig) { rig.wire().freeze(); }},
        {"nothing is read", [](NetworkRig& rig) { rig.wire().clog(); }},
        {"silent", [](NetworkRig& rig) { rig.device()->setSilent(true); },
         [](NetworkRig& rig) { rig.device()->setSilent(false); }},
        {"answers after the time-out", [](NetworkRig& rig) { rig.wire().delay(2500ms); }},
        {"partial lines", [](NetworkRig& rig) { rig.wire().cutUp(); }},
        {"slow, several lines at once", [](NetworkRig& rig) { rig.wire().delay(150ms); }},
        {"garbage bytes", [](NetworkRig& rig) { rig.wire().insert("\x01\xFF\x80 nonsense \n"); }},
        {"wrong answer",
         [](NetworkRig& rig) {
             rig.wire().change(onAnswers([](const std::string&) { return Lines{"1;0,\"No error\";7"}; }));
         }},
        {"every answer twice",
         [](NetworkRig& rig) {
             rig.wire().change(onAnswers([](const std::string& line) { return Lines{line, line}; }));
         }},
        onEvents("duplicated events",
                 [](const std::string& line) -> Lines {
                     return line.starts_with('!') ? Lines{line, line} : Lines{line};
                 }),
        {"reordered events",
         [](NetworkRig& rig) {
             rig.wire().change(reorder());
             touchInput(rig);
         }},
        onEvents("time that jumps back",
                 [](const std::string& line) -> Lines { return {replaceField(line, 1, "1")}; }),
        onEvents("values out of range",
                 [](const std::string& line) -> Lines { return {replaceField(line, 3, "4000000000")}; }),
        onEvents("values not finite",
                 [](const std::string& line) -> Lines { return {replaceField(line, 1, "NAN")}; }),
        {"device reboots", [](NetworkRig& rig) { rig.reboot(); }},
        {"overload", [](NetworkRig& rig) { rig.device()->simulateOverload(0); },
         [](NetworkRig& rig) { rig.device()->clearFaults(); }},
        {"overheat", [](NetworkRig& rig) { rig.device()->simulateOverheat(1); },
         [](NetworkRig& rig) { rig.device()->clearFaults(); }},
        {"channel lost", [](NetworkRig& rig) { rig.device()->simulateChannelLost(2); },
         [](NetworkRig& rig) { rig.device()->clearFaults(); }},
        {"emergency button", [](NetworkRig& rig) { rig.device()->simulateQuickShutdown(); },
         [](NetworkRig& rig) { rig.device()->clearFaults(); }},
        {"taken over by another program", [](NetworkRig& rig) { rig.wire().drop(), rig.takeOver(); },
         [](NetworkRig& rig) { rig.letGo(); }},
        {"other protocol version",
         [](NetworkRig& rig) {
             rig.wire().drop();
             rig.wire().change(onAnswers([](std::string line) {
                 if (const auto at = line.find("1.0;"); at != std::string::npos)
                     line.replace(at, 3, "2.0");
                 return Lines{line};
             }));
         }},
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

constexpr const char* reported = "off, reported";

Outcome tryPair(unsigned number, const Fault& fault, const Moment& moment, bool mayBeReported)
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
        complain("the moment has not come [" + rig.getLastMessage() + "]");
    std::this_thread::sleep_for(50ms);
    auto messages = rig.takeMessages();
    // What has ended a run is told, and by a thread of its own.
    for (const auto end = Clock::now() + 2s;
         (!isWhole || (mayBeReported && !moment.isRace)) && messages.empty() && Clock::now() < end;
         messages = rig.takeMessages())
        std::this_thread::sleep_for(10ms);
    outcome.cell = moment.isRace ? "off" : messages.empty() ? "undisturbed" : reported;
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
    FaultsPage page;
    // They mostly wait; more of them at once keep a busy machine from answering in time.
    std::counting_semaphore<> places(16);
    std::vector<std::vector<std::future<Outcome>>> outcomes(faults.size());
    const auto begin = [&](std::size_t row, std::size_t column) {
        const bool mayBeReported = page.isBeingWritten() || page.getCell(row, column) == reported;
        const auto number = static_cast<unsigned>(row * moments.size() + column);
        places.acquire();
        return std::async(std::launch::async, [&, row, column, number, mayBeReported] {
            Outcome outcome;
            try {
                outcome = tryPair(number, faults[row], moments[column], mayBeReported);
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
    std::ostringstream table;
    table << "| fault |";
    for (const auto& moment : moments)
        table << ' ' << moment.name << " |";
    table << "\n|---|";
    for (std::size_t i = 0; i < moments.size(); ++i)
        table << "---|";
    table << '\n';
    for (std::size_t i = 0; i < faults.size(); ++i) {
        table << "| " << faults[i].name << " |";
        for (std::size_t j = 0; j < moments.size(); ++j) {
            const auto outcome = outcomes[i][j].get();
            EXPECT_EQ(outcome.defect, "") << faults[i].name << ", " << moments[j].name;
            table << ' ' << outcome.cell << " |";
        }
        table << '\n';
    }
    page.expect(table.str());
}

} // namespace
} // namespace KesTest
