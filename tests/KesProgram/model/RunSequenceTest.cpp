// The tables of docs/run-sequence.md, row by row: the flags of a run that nobody disturbs, and what happens
// when an event meets a phase.

#include "RecordingModel.h"

#include "support/GuiTest.h"
#include "support/TemporaryHome.h"

#include <KesDriver/KesAvary.h>

namespace {

using namespace KesTest;

enum class Phase { Idle, Starting, Running, Stopped };
enum class Event { Start, Stop, Disconnect, Fault, LostDevice, Close, Finish };

using Entries = std::vector<std::string>;

const std::string faultText = "message: Fault KESTO-3 No. 00017\nIA - Overload";
const std::string lostText = "message: Fault KESTO-3 No. 00017\nConnection error";

const Entries stops{"canStop", "running", "onStop"};
const Entries nothing;

Entries operator+(Entries a, const Entries& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

/// The rest of a start that goes through to the end of its test body.
const Entries runs{"canStop", "running", "onStart", "state"};
const Entries ends{"onFinishHardware", "onFinished", "state", "canStart", "finished(true)"};
const Entries endsRunning{"onFinishHardware", "onFinished", "state",         "canStart",
                          "canStop",          "running",    "finished(true)"};
const Entries failsToStart{"onFinishHardware", "onFinished", "canStart", "finished(false)"};

struct Row {
    const char* name;
    Phase phase;
    Event event;
    /// What has happened when the event's call has returned.
    Entries atOnce;
    /// What follows when preparation and test body are let go on.
    Entries afterwards;
};

class RunSequence : public GuiTest {
protected:
    void reach(Phase phase)
    {
        model.init();
        model._setCanProgramStart(true);
        model.prepareDoor.close();
        model.bodyDoor.close();
        if (phase == Phase::Idle)
            return;
        ASSERT_TRUE(model.startTest());
        ASSERT_TRUE(waitFor([this] { return model.has("onPrepareHardware"); }));
        if (phase == Phase::Starting)
            return;
        model.prepareDoor.open();
        ASSERT_TRUE(waitFor([this] { return model.has("state"); }));
        if (phase == Phase::Stopped)
            model.stopTest();
    }
    void reportFault(bool lost)
    {
        std::thread device([this, lost] {
            KesDriver::KesAvary avary{3, 17, lost, false, {}};
            if (!lost)
                avary.channels.push_back({"IA", false, false, true});
            model.getHardware()->signalAvary.emit(avary);
        });
        device.join();
    }

    TemporaryHome home;
    RecordingModel model;
};

class RunEvent : public RunSequence, public testing::WithParamInterface<Row> {
protected:
    void perform(Event event)
    {
        switch (event) {
        case Event::Start:
            EXPECT_EQ(model.startTest(), GetParam().phase == Phase::Idle);
            break;
        case Event::Stop:
            model.stopTest();
            break;
        case Event::Disconnect:
            model.beginDisconnect();
            break;
        case Event::Fault:
            reportFault(false);
            break;
        case Event::LostDevice:
            reportFault(true);
            break;
        case Event::Close:
            model.close();
            break;
        case Event::Finish:
            GetParam().phase == Phase::Idle ? model._finish() : model.bodyDoor.open();
            break;
        }
    }
};

TEST_P(RunEvent, Row)
{
    const Row& row = GetParam();
    reach(row.phase);
    model.take();

    perform(row.event);
    if (row.event != Event::Finish && !(row.phase == Phase::Idle && row.event == Event::Start)) {
        auto atOnce = model.take();
        EXPECT_THAT(atOnce, testing::ElementsAreArray(row.atOnce));
    } else {
        ASSERT_TRUE(row.atOnce.empty());
    }

    model.prepareDoor.open();
    model.bodyDoor.open();
    if (!row.afterwards.empty()) {
        ASSERT_TRUE(waitFor([&] { return model.has(row.afterwards.back()); }));
    }
    runPendingEvents();
    EXPECT_THAT(model.take(), testing::ElementsAreArray(row.afterwards));
    EXPECT_FALSE(model.isRunning());
    EXPECT_EQ(model.getState(), "");
}

TEST_F(RunSequence, FlagsOfARunThatNobodyDisturbs)
{
    model.init();
    model._setCanProgramStart(true);
    model.take();
    EXPECT_EQ(model.getFlags(), "c--");
    model.withFlags = true;
    ASSERT_TRUE(model.startTest());
    ASSERT_TRUE(waitFor([this] { return model.has("finished(true) c-o"); }));
    EXPECT_THAT(model.take(),
                testing::ElementsAre("canStart ---", "onPrepareStart ---", "onPrepareHardware ---",
                                     "canStop -r-", "running -r-", "onStart -ro", "state -ro",
                                     "onFinishHardware -ro", "onFinished -ro", "state -ro", "canStart cro",
                                     "canStop c-o", "running c-o", "finished(true) c-o"));
    EXPECT_TRUE(waitFor([this] { return model.getFlags() == "c--"; }));
}

const Entries startsAtOnce{"canStart", "onPrepareStart", "onPrepareHardware"};
const Entries finishesIdle{"onFinishHardware", "onFinished", "finished(false)"};
const Entries closes{"onClosing", "closing"};
const Entries closed{"closed"};

INSTANTIATE_TEST_SUITE_P(
    Grid, RunEvent,
    testing::Values(
        Row{"IdleStart", Phase::Idle, Event::Start, nothing, startsAtOnce + runs + endsRunning},
        Row{"IdleStop", Phase::Idle, Event::Stop, nothing, nothing},
        Row{"IdleDisconnect", Phase::Idle, Event::Disconnect, nothing, nothing},
        Row{"IdleFault", Phase::Idle, Event::Fault, {faultText}, nothing},
        Row{"IdleLostDevice", Phase::Idle, Event::LostDevice, {lostText}, nothing},
        Row{"IdleClose", Phase::Idle, Event::Close, closes, closed},
        Row{"IdleFinish", Phase::Idle, Event::Finish, nothing, finishesIdle},

        Row{"StartingStart", Phase::Starting, Event::Start, nothing, runs + endsRunning},
        Row{"StartingStop", Phase::Starting, Event::Stop, nothing, runs + endsRunning},
        Row{"StartingDisconnect", Phase::Starting, Event::Disconnect, nothing, runs + endsRunning},
        Row{"StartingFault", Phase::Starting, Event::Fault, {faultText}, runs + endsRunning},
        Row{"StartingLostDevice", Phase::Starting, Event::LostDevice, {lostText}, runs + endsRunning},
        Row{"StartingClose", Phase::Starting, Event::Close, closes, failsToStart + closed},

        Row{"RunningStart", Phase::Running, Event::Start, nothing, endsRunning},
        Row{"RunningStop", Phase::Running, Event::Stop, stops, ends},
        Row{"RunningDisconnect", Phase::Running, Event::Disconnect, stops, ends},
        Row{"RunningFault", Phase::Running, Event::Fault, stops + Entries{faultText}, ends},
        Row{"RunningLostDevice", Phase::Running, Event::LostDevice, stops + Entries{lostText}, ends},
        Row{"RunningClose", Phase::Running, Event::Close, stops + closes, ends + closed},
        Row{"RunningFinish", Phase::Running, Event::Finish, nothing, endsRunning},

        Row{"StoppedStart", Phase::Stopped, Event::Start, nothing, ends},
        Row{"StoppedStop", Phase::Stopped, Event::Stop, nothing, ends},
        Row{"StoppedDisconnect", Phase::Stopped, Event::Disconnect, nothing, ends},
        Row{"StoppedFault", Phase::Stopped, Event::Fault, {faultText}, ends},
        Row{"StoppedLostDevice", Phase::Stopped, Event::LostDevice, {lostText}, ends},
        Row{"StoppedClose", Phase::Stopped, Event::Close, closes, ends + closed}),
    [](const auto& row) { return row.param.name; });

} // namespace
