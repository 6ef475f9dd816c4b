#include "TestClient.h"

#include "support/SimulatedRelay.h"

#include <KesDriver/net/ValueText.h>
#include <KesDriver/scpi/Block.h>
#include <KesDriver/simulated/serving/DeviceServer.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

using namespace std::chrono_literals;
using namespace std::string_literals;
using KesDriver::DeviceServer;
using KesDriver::SimulatedKesto;
using KesTest::TestClient;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

const std::string good = "0,\"No error\"";
const std::string zero = "0,0,0,0,0,0,0,0,0,0,0,0,50,50,0";

/// A state with this current in IA.
std::string amperes(const std::string& value)
{
    return value + ",0,0,0,0,0,0,0,0,0,0,0,50,50,0";
}

std::string step(const std::string& seconds, const std::string& value)
{
    return ":SEQ:STEP " + seconds + ',' + amperes(value);
}

template <typename Condition>
bool waitUntil(Condition&& condition)
{
    for (int i = 0; i < 1000; ++i) {
        if (condition())
            return true;
        std::this_thread::sleep_for(10ms);
    }
    return false;
}

class SessionTest : public testing::Test {
protected:
    int connect() { return server.connect(); }
    void takeControl()
    {
        ASSERT_EQ(client.tell("SYST:CONT:TAKE \"test\""), good);
        ASSERT_EQ(client.tell("OUTP ON"), good);
    }

    std::shared_ptr<SimulatedKesto> device =
        std::make_shared<SimulatedKesto>(KesDriver::KestoIdentity{{3, 17}, "2.4.1", "2026-03-31"});
    DeviceServer server{device};
    TestClient client{server.connect()};
};

} // namespace

TEST_F(SessionTest, TellsAboutTheDevice)
{
    const struct {
        const char* query;
        const char* answer;
    } cases[] = {
        {"*IDN?", "KES,KESTO-3,00017,2.4.1"},
        {"*TST?;*OPC?", "0;1"},
        {"SYSTEM:VERS?;PROT?;SIM?", "1999.0;1.0;1"},
        {"syst:lim?", "32,300,10,1000,8,4,450,32,10000000,10000,500"},
        {"SYST:STAT?", "1,0,0,0,IDLE"},
        {"SYST:FAUL?;:CAL:DATE?", "0;\"2026-03-31\""},
        {"SYST:ECHO? -9007199254740992", "-9007199254740992"},
        {"SYST:CONT?;CONT:OWN?", "0;\"\",\"\""},
        {"SYST:WATC?;:SIM:SPE?", "0;1"},
        {"OUTP?;:OUTP:AUX?;:APPL?", "0;0,0;0,0,0,0,0,0,0,0,0,0,0,0,50,50,0"},
        {"SOURCE:CURR3:PHAS?;:VOLT:LEV?;:CURR:FREQ?;:DIG?", "0;0;50;0"},
        {"EVEN:LAST?;DATA? 1;:INP:STAT?", "0;\"\";0"},
        {"SEQ:COUN?;:SIM:WIRE:CAT?;:SIM:ENER?;OFF?", "0;\"overcurrent\",\"voltage-frequency\";0;0"},
        {"*STB?;*ESR?;*ESE?;*SRE?;:STAT:OPER?;OPER:COND?;PTR?;NTR?;:STAT:QUES:ENAB?",
         "0;128;0;0;0;0;32767;0;0"},
        {"SYST:ERR?", "0,\"No error\""},
    };
    for (const auto& [query, answer] : cases)
        EXPECT_EQ(client.ask(query), answer) << query;
    // Another start is another number.
    DeviceServer restarted(std::make_shared<SimulatedKesto>(device->getIdentity()));
    EXPECT_NE(client.ask("SYST:BOOT?"), TestClient(restarted.connect()).ask("SYST:BOOT?"));
}

TEST_F(SessionTest, RefusesWithTheCodesOfTheProtocol)
{
    takeControl();
    const auto longSequence = [] {
        std::string lines;
        for (int i = 0; i <= 10000; ++i)
            lines += "STEP 1," + zero + '\n';
        return "SEQ:DATA " + KesDriver::Scpi::writeBlock(lines);
    };
    const struct {
        std::string command;
        const char* error;
    } cases[] = {
        {"FOO", "-113,"},
        {"VOLT9 1", "-114,"},
        {"CURR", "-109,"},
        {"OUTP ON,OFF", "-108,"},
        {"CURR \"1\"", "-104,"},
        {"CURR 1 V", "-131,"},
        {"CURR 40", "-222,\"Data out of range;IA: 40 A is above the limit of 32 A.\""},
        {"CURR 1,(@1:4)", "-222,"},
        {"DIG 16", "-222,\"Data out of range;Binary output 5 does not exist: the device has 4.\""},
        {"OUTP:AUX ON", "-109,"},
        {"OUTP:AUX ON,11", "-222,"},
        {"SYST:WATC 0.1", "-222,"},
        {"SEQ:END ANY,0,1C", "-221,"},
        {"SEQ:STEP 1e30," + zero, "-222,"},
        {"SEQ:DATA #16STEP 1", "-161,\"Invalid block data;line 1\""},
        {longSequence(), "-223,"},
        {"INIT", "-221,"},
        {step("1", "33") + ";:INIT",
         "-222,\"Data out of range;Step 1. IA: 33 A is above the limit of 32 A.\""},
        {"SEQ:END ANY,0,X", "-224,"},
        {"TRIG", "105,\"Device error;There is no sequence that waits for its start.\""},
        {"SIM:WIRE \"valve\"", "-224,"},
        {"SIM:WIRE \"overcurrent\",\"pickup=-1\"", "-224,"},
        {"SIM:SPE 0", "-222,"},
        {"EVEN:DATA? 0", "-222,"},
        {"OUTP OFF;:CURR 1", "102,"},
        {"OUTP ON;:SEQ:CLE;" + step("5", "1") + ";ARM;:CURR 1", "104,"},
        {"TRIG:AT -1000000", "106,"},
        {"TRIG:INP 9", "-222,"},
        {"ABOR;INIT;INIT", "103,"},
        {"SIM:FAUL LOST,6;:OUTP ON", "101,\"Device error;Fault: UC - channel is disconnected\""},
        {"SIM:FAUL CLE;:SYST:CONT:REL;:OUTP ON", "-203,\"Command protected;nobody has control\""},
    };
    for (const auto& [command, error] : cases) {
        EXPECT_THAT(client.tell(command), StartsWith(error)) << command.substr(0, 60);
        EXPECT_EQ(client.ask("SYST:ERR:COUN?"), "0") << command.substr(0, 60);
    }
}

TEST_F(SessionTest, SetsOutputsAtOnce)
{
    takeControl();
    EXPECT_EQ(
        client.tell(
            "OUTP:AUX ON,110V;:CURR 1500 mA,(@1:3);:CURR2:PHAS -120;:VOLT3 57.7;:VOLT:FREQ 0.06kHz;:DIG 5"),
        good);
    EXPECT_EQ(client.ask("APPL?;:OUTP:AUX?"), "1.5,0,1.5,-120,1.5,0,0,0,0,0,57.7,0,50,60,5;1,110");
    EXPECT_EQ(device->getOutputs().currents[2].magnitude, 1.5);
    EXPECT_EQ(client.tell("OUTP:AUX OFF;AUX ON"), good);
    EXPECT_EQ(client.tell("APPL " + amperes("2 A") + ";:ABOR"), good);
    EXPECT_EQ(client.ask("CURR?;:SIM:ENER?;:SYST:STAT?"), "0;1;1,1,110,1,IDLE");
    EXPECT_EQ(client.tell("*RST"), good);
    EXPECT_EQ(client.ask("SYST:STAT?"), "1,0,0,0,IDLE");
}

TEST_F(SessionTest, MeasuresByQueriesAlone)
{
    device->connectTestObject(std::make_shared<KesTest::SimulatedRelay>(1.5, 345678us, 10ms));
    takeControl();
    EXPECT_EQ(client.tell(step("0.2", "1") + ";" + step("2 s", "3") + ";:SEQ:END ANY,1 ms,1CE"), good);
    EXPECT_EQ(client.tell("INIT"), good);
    ASSERT_TRUE(waitUntil([&] { return client.ask("SYST:STAT?").ends_with("IDLE"); }));
    const auto events = client.ask("EVEN:DATA? 1,100");
    long long begun = 0;
    long long closed = 0;
    ASSERT_EQ(std::sscanf(events.substr(events.find("\"2,")).c_str(), "\"2,%lld,STEP,1\"", &begun), 1)
        << events;
    ASSERT_EQ(std::sscanf(events.substr(events.find("\"3,")).c_str(), "\"3,%lld,INP,1,1,1\"", &closed), 1)
        << events;
    EXPECT_EQ(closed - begun, 345678);
    EXPECT_THAT(events, HasSubstr(std::to_string(closed + 1000) + ",SEQ,1\""));
    EXPECT_EQ(client.ask("SIM:OFF?"), std::to_string(closed + 1000));
    // What is prepared stays, and what it was made of reads back.
    EXPECT_EQ(client.ask("SEQ:COUN?"), "2");
}

TEST_F(SessionTest, RunsArmedSequencesOnATriggerAndTakesThemAsABlock)
{
    takeControl();
    client.tell("EVEN:SUBS ON");
    const auto lines = "STEP 0.05," + amperes("1") +
                       "\r\nRAMP 1,0,0,0,0,0,0,0,0,0,0,0,0,0\n\nANGLE 90\nSTEP 0.01," + zero + '\n';
    EXPECT_EQ(client.tell("SEQ:DATA " + KesDriver::Scpi::writeBlock(lines) + ";ARM"), good);
    EXPECT_EQ(client.ask("SEQ:COUN?;:SYST:STAT?;:STAT:OPER:COND?"), "2;1,0,0,1,ARM;288");
    EXPECT_EQ(client.tell("TRIG:INP 3"), good);
    EXPECT_EQ(client.tell("SIM:INP 3,ON"), good);
    EXPECT_EQ(client.awaitEvent("INP"), "3,1");
    EXPECT_EQ(client.awaitEvent("STEP"), "0");
    EXPECT_EQ(client.awaitEvent("SEQ"), "1");
    EXPECT_EQ(client.ask("INP:STAT?"), "4");
    EXPECT_EQ(client.tell("SEQ:ARM"), good);
    const auto clocks = client.ask("SYST:CLOC:COMM?");
    const auto common = std::stoll(clocks.substr(clocks.find(',') + 1));
    EXPECT_EQ(client.tell("TRIG:AT " + std::to_string(common + 100000)), good);
    EXPECT_EQ(client.awaitEvent("SEQ"), "1");
    EXPECT_EQ(client.tell("SEQ:ARM;:TRIG;:ABOR"), good);
    EXPECT_EQ(client.awaitEvent("SEQ"), "0");
}

TEST_F(SessionTest, TellsAnEventBeforeTheAnswerToWhatCausedIt)
{
    takeControl();
    client.tell("EVEN:SUBS ON");
    for (int i = 0; i < 50; ++i) {
        client.events.clear();
        client.ask("SIM:INP 1,ON;INP 2,ON;INP 1,OFF;INP 2,OFF;:SYST:ECHO? 1");
        ASSERT_EQ(client.events.size(), 4U);
    }
    const auto last = std::stoull(client.ask("EVEN:LAST?"));
    EXPECT_EQ(last, 200U);
    // What was missed can be had again, pushed or asked for.
    EXPECT_THAT(client.ask("EVEN:DATA? 199"),
                testing::ContainsRegex("^\"199,[0-9]+,INP,1,0\",\"200,[0-9]+,INP,2,0\"$"));
    client.events.clear();
    client.ask("EVEN:SUBS OFF;SUBS ON,198;:SYST:ECHO? 2");
    EXPECT_EQ(client.events.size(), 3U);
    client.events.clear();
    client.ask("EVEN:SUBS OFF;:SIM:INP 1,ON;:SYST:ECHO? 3");
    EXPECT_EQ(client.events.size(), 0U);
}

TEST_F(SessionTest, ForgetsTheOldestEventsAndSaysSo)
{
    for (int i = 0; i < 33; ++i) {
        std::string message;
        for (int j = 0; j < 1000; ++j)
            message += "SIM:INP 1,1;:SIM:INP 1,0;:";
        client.ask(message + "SYST:ECHO? 1");
    }
    EXPECT_EQ(client.ask("EVEN:LAST?"), "66000");
    EXPECT_EQ(client.tell("EVEN:DATA? 464"),
              "-230,\"Data corrupt or stale;the oldest remembered event is 465\"");
    EXPECT_THAT(client.ask("EVEN:DATA? 465,1"), StartsWith("\"465,"));
}

TEST_F(SessionTest, GivesControlToOneSessionAtATime)
{
    takeControl();
    TestClient other(connect());
    EXPECT_EQ(other.tell("SYST:CONT:TAKE \"other\""), "-203,\"Command protected;test at local has control\"");
    EXPECT_EQ(other.tell("CURR 1"), "-203,\"Command protected;test at local has control\"");
    EXPECT_EQ(other.ask("SYST:CONT?;CONT:OWN?;:OUTP?"), "0;\"test\",\"local\";1");
    EXPECT_EQ(other.tell("EVEN:SUBS ON"), good);
    EXPECT_EQ(client.tell("OUTP:AUX ON,24;:CURR 1;:SYST:CONT:REL"), good);
    EXPECT_EQ(other.awaitEvent("RELEASE"), "\"control was given back\"");
    EXPECT_EQ(other.tell("SYST:CONT:TAKE \"other\""), good);
    EXPECT_EQ(other.ask("SYST:STAT?;CONT?"), "1,0,0,0,IDLE;1");
    EXPECT_EQ(client.tell("CURR 1"), "-203,\"Command protected;other at local has control\"");
}

TEST_F(SessionTest, SwitchesEverythingOffWhenTheControllerIsGone)
{
    TestClient watcher(connect());
    watcher.tell("EVEN:SUBS ON");
    takeControl();
    client.tell(step("60", "1") + ";:OUTP:AUX ON,24;:INIT");
    client.close();
    EXPECT_EQ(watcher.awaitEvent("SEQ"), "0");
    EXPECT_EQ(watcher.awaitEvent("RELEASE"), "\"the session of the controller has ended\"");
    EXPECT_EQ(watcher.ask("SYST:STAT?;CONT:OWN?"), "1,0,0,0,IDLE;\"\",\"\"");
    EXPECT_EQ(device->getOutputs(), KesDriver::OutputState{});

    TestClient next(connect());
    EXPECT_EQ(next.tell("SYST:CONT:TAKE \"next\";:OUTP ON;:SYST:WATC 0.2"), good);
    EXPECT_EQ(next.ask("SYST:WATC?"), "0.2");
    // While it is heard of, nothing happens.
    for (int i = 0; i < 10; ++i) {
        std::this_thread::sleep_for(50ms);
        EXPECT_EQ(next.ask("OUTP?"), "1");
    }
    EXPECT_EQ(watcher.awaitEvent("RELEASE"), "\"nothing was heard of the controller for 0.2 s\"");
    EXPECT_EQ(next.ask("SYST:CONT?;WATC?;:OUTP?"), "0;0;0");

    // The bench can drop a controller, too.
    EXPECT_EQ(next.tell("SYST:CONT:TAKE \"next\";:OUTP ON"), good);
    device->simulateConnectionLoss();
    EXPECT_TRUE(next.waitForEnd());
    EXPECT_EQ(watcher.awaitEvent("RELEASE"), "\"the device has dropped next\"");
}

TEST_F(SessionTest, TellsFaultsAndLatchesThemInTheRegisters)
{
    takeControl();
    client.tell("EVEN:SUBS ON;:STAT:QUES:ENAB 1;:STAT:OPER:NTR 8;*SRE 8");
    client.tell(step("60", "20") + ";:INIT");
    EXPECT_EQ(client.ask("STAT:OPER:COND?;EVEN?"), "264;264");
    EXPECT_EQ(client.tell("SIM:BURD 2 OHM"), good);
    EXPECT_EQ(client.awaitEvent("FAULT"), "0,\"IA:100\"");
    EXPECT_EQ(client.awaitEvent("SEQ"), "0");
    EXPECT_EQ(client.ask("SYST:FAUL?;:STAT:QUES:COND?;*STB?;:STAT:QUES?;:STAT:OPER?;:SYST:STAT?"),
              "0,\"IA:100\";1;88;1;8;0,0,0,1,IDLE");
    EXPECT_EQ(client.tell("SIM:BURD 0;FAUL CLE;FAUL HEAT,4;FAUL LOST,5;FAUL QUIC"), good);
    EXPECT_EQ(client.ask("SYST:FAUL?;:STAT:QUES:COND?"), "1,\"UA:010\",\"UB:001\";784");
}

TEST_F(SessionTest, EndsSessionsThatSendOrReadTooLittleOrTooMuch)
{
    TestClient talker(connect());
    talker.sendBytes(std::string(70000, 'x'));
    EXPECT_TRUE(talker.waitForEnd());
    TestClient blocker(connect());
    blocker.sendBytes("SEQ:DATA #9008388609");
    EXPECT_TRUE(blocker.waitForEnd());

    // A whole block is fine.
    TestClient writer(connect());
    EXPECT_THAT(
        writer.tell("SEQ:DATA " + KesDriver::Scpi::writeBlock(std::string(std::size_t{8} << 20U, '\n'))),
        good);
    // Answers that do not fit are cut off.
    std::string many = "EVEN:LAST?";
    for (int i = 0; i < 1000; ++i)
        writer.send("SIM:INP 1,1;INP 1,0");
    for (int i = 0; i < 60; ++i)
        many += ";DATA? 1,1000";
    EXPECT_LT(writer.ask(many).size(), std::size_t{1} << 20U);
    EXPECT_THAT(writer.ask("SYST:ERR?"), StartsWith("-440,"));

    // Who reads nothing is given up; the device goes on meanwhile.
    TestClient sleeper(connect());
    sleeper.tell("EVEN:SUBS ON,1;:SYST:CONT:TAKE \"sleeper\"");
    for (int i = 0; i < 100; ++i)
        sleeper.send("EVEN:DATA? 1,1000;DATA? 1,1000;DATA? 1,1000");
    EXPECT_TRUE(waitUntil([&] { return writer.ask("SYST:CONT:OWN?") == "\"\",\"\""; }));
    EXPECT_TRUE(waitUntil([&] { return server.getSessionCount() == 2; }));
}

TEST_F(SessionTest, StaysItselfWhenTheNetworkIsBad)
{
    TestClient bench(connect());
    takeControl();
    EXPECT_EQ(bench.tell("SIM:SIL 1"), good);
    client.send("*IDN?");
    EXPECT_EQ(client.readLine(200ms), std::nullopt);
    TestClient late(connect());
    late.send("*OPC?");
    EXPECT_EQ(late.readLine(100ms), std::nullopt);
    EXPECT_EQ(bench.tell("SIM:SIL 0"), good);
    EXPECT_EQ(client.readLine(), "KES,KESTO-3,00017,2.4.1");
    EXPECT_EQ(late.readLine(), "1");

    EXPECT_EQ(bench.tell("SIM:DEL 0.2"), good);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(client.ask("*OPC?"), "1");
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 200ms);
    EXPECT_EQ(bench.tell("SIM:DEL 0"), good);

    EXPECT_EQ(bench.tell("SIM:GARB 1"), good);
    EXPECT_THAT(client.ask("SYST:STAT?"), HasSubstr("nan"));
    for (const char* query : {"*IDN?", "SYST:LIM?", "SYST:CLOC?", "CAL:DATE?", "SYST:FAUL?"})
        EXPECT_NE(client.ask(query), "(over)") << query;
    EXPECT_EQ(bench.tell("SIM:GARB 0"), good);

    EXPECT_EQ(bench.tell("SIM:DROP"), good);
    EXPECT_TRUE(client.waitForEnd());
    EXPECT_TRUE(waitUntil([&] { return bench.ask("SYST:CONT:OWN?;:OUTP?") == "\"\",\"\";0"; }));
}

TEST_F(SessionTest, WaitsInLockstepForTheController)
{
    EXPECT_THAT(client.tell("SIM:LOCK ON"), StartsWith("-203,"));
    takeControl();
    // Nothing but the acknowledgement of each event keeps 300 s of device time from being over at once.
    EXPECT_EQ(client.tell("SIM:SPE 100000;LOCK ON;:EVEN:SUBS ON;" + step("100", "1") + ";" +
                          step("100", "2") + ";" + step("100", "1") + ";:INIT"),
              good);
    for (const char* number : {"0", "1"}) {
        EXPECT_EQ(client.awaitEvent("STEP"), number);
        std::this_thread::sleep_for(50ms);
        EXPECT_EQ(client.readLine(0ms), std::nullopt);
        const auto& event = client.events.back();
        client.send("EVEN:ACKN " + event.substr(1, event.find(',') - 1));
    }
    EXPECT_EQ(client.awaitEvent("STEP"), "2");
    // Outputs can be set to zero in the middle of it.
    EXPECT_EQ(client.tell("ABOR"), good);
    EXPECT_EQ(client.awaitEvent("SEQ"), "0");
    // Without an acknowledgement it goes on after two seconds.
    EXPECT_EQ(client.tell("INIT"), good);
    EXPECT_EQ(client.awaitEvent("STEP"), "0");
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(client.awaitEvent("STEP"), "1");
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 1900ms);
    EXPECT_EQ(client.tell("SIM:LOCK OFF"), good);
    EXPECT_EQ(client.awaitEvent("SEQ"), "1");
}

TEST(DeviceServerTest, ServesManyOnAnAddressAndEndsAtOnce)
{
    const auto device = std::make_shared<SimulatedKesto>(KesDriver::KestoIdentifer(3, 5));
    const auto other = std::make_shared<SimulatedKesto>(KesDriver::KestoIdentifer(3, 6));
    std::uint16_t port = 0;
    for (int round = 0; round < 2; ++round) {
        DeviceServer server(device);
        // The same port again at once.
        ASSERT_TRUE(server.listen("127.7.2.1", port));
        port = server.getPort();
        EXPECT_FALSE(DeviceServer(other).listen("127.7.2.1", port));
        EXPECT_FALSE(server.listen("127.7.2.1", 0));
        std::vector<std::unique_ptr<TestClient>> clients;
        for (std::size_t i = 0; i < DeviceServer::mostSessions; ++i) {
            clients.push_back(std::make_unique<TestClient>("127.7.2.1", port));
            EXPECT_EQ(clients.back()->ask("*OPC?"), "1");
        }
        TestClient refused("127.7.2.1", port);
        EXPECT_THAT(refused.readLine().value_or(""), HasSubstr("no session free"));
        EXPECT_TRUE(refused.waitForEnd());

        EXPECT_EQ(clients[0]->tell("SYST:CONT:TAKE \"first\";:OUTP ON;:CURR 1"), good);
        EXPECT_THAT(clients[1]->tell("ABOR"), HasSubstr("first at 127."));
        // One that has said its last word still gets its answer, and makes room.
        clients[2]->send("*IDN?");
        clients[2]->endSending();
        EXPECT_EQ(clients[2]->readLine(), "KES,KESTO-3,00005,1.0.0");
        EXPECT_TRUE(clients[2]->waitForEnd());
        ASSERT_TRUE(waitUntil([&] { return server.getSessionCount() == DeviceServer::mostSessions - 1; }));
        EXPECT_EQ(TestClient("127.7.2.1", port).ask("*OPC?"), "1");
        EXPECT_EQ(device->getOutputs().currents[0].magnitude, 1.0);
        if (round == 0)
            clients.clear();
    }
    EXPECT_FALSE(device->isWorking());
    EXPECT_FALSE(DeviceServer(other).listen("not an address", 1));
}
