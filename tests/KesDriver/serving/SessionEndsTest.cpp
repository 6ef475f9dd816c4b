// Who has control of a served device, how sessions end, and what becomes of the device then.

#include "SessionTest.h"

#include <KesDriver/scpi/Block.h>

using testing::HasSubstr;
using testing::StartsWith;

namespace KesTest {
namespace {

using SessionEndsTest = SessionTest;

TEST_F(SessionEndsTest, GivesControlToOneSessionAtATime)
{
    takeControl();
    TestClient other(connect());
    EXPECT_EQ(other.tell("SYST:CONT:TAKE \"other\""), "-203,\"Command protected;test at local has control\"");
    EXPECT_EQ(other.tell("CURR 1"), "-203,\"Command protected;test at local has control\"");
    EXPECT_THAT(other.tell("SYST:WATC 1"), StartsWith("-203,"));
    EXPECT_EQ(other.ask("SYST:CONT?;CONT:OWN?;:OUTP?"), "0;\"test\",\"local\";1");
    // Without a watchdog at first, and each time.
    EXPECT_EQ(client.tell("SYST:WATC 5;CONT:TAKE \"test\""), good);
    EXPECT_EQ(client.ask("SYST:WATC?;WATC 5;CONT:REL;:SYST:WATC?"), "0;0");
    takeControl();
    EXPECT_EQ(other.tell("EVEN:SUBS ON"), good);
    EXPECT_EQ(client.tell("OUTP:AUX ON,24;:CURR 1;:SYST:CONT:REL"), good);
    EXPECT_EQ(other.awaitEvent("RELEASE"), "\"control was given back\"");
    EXPECT_EQ(other.tell("SYST:CONT:TAKE \"other\""), good);
    EXPECT_EQ(other.ask("SYST:STAT?;CONT?"), "1,0,0,0,IDLE;1");
    EXPECT_EQ(client.tell("CURR 1"), "-203,\"Command protected;other at local has control\"");
}

TEST_F(SessionEndsTest, SwitchesEverythingOffWhenTheControllerIsGone)
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
    // While it is heard of, even by parts of a line, nothing happens.
    for (const char c : std::string("OUTP?\n")) {
        std::this_thread::sleep_for(50ms);
        next.sendBytes(std::string(1, c));
    }
    EXPECT_EQ(next.readLine(), "1");
    EXPECT_EQ(watcher.awaitEvent("RELEASE"), "\"nothing was heard of the controller for 0.2 s\"");
    EXPECT_EQ(next.ask("SYST:CONT?;WATC?;:OUTP?"), "0;0;0");

    // The bench can drop a controller, too.
    EXPECT_EQ(next.tell("SYST:CONT:TAKE \"next\";:OUTP ON"), good);
    device->simulateConnectionLoss();
    EXPECT_TRUE(next.waitForEnd());
    EXPECT_EQ(watcher.awaitEvent("RELEASE"), "\"the device has dropped next\"");
}

TEST_F(SessionEndsTest, EndsSessionsThatSendOrReadTooLittleOrTooMuch)
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
    // What has been read does not count.
    for (int i = 0; i < 6; ++i)
        EXPECT_LT(writer.ask(many).size(), std::size_t{1} << 20U);
    EXPECT_THAT(writer.ask("SYST:ERR?"), StartsWith("-440,"));
    // Who has said its last word still gets its answer, at its own speed.
    TestClient last(connect());
    last.send(many);
    std::this_thread::sleep_for(100ms);
    last.endSending();
    std::this_thread::sleep_for(50ms);
    EXPECT_TRUE(last.readLine());
    EXPECT_TRUE(last.waitForEnd());

    // Who reads nothing is given up; the device goes on meanwhile.
    TestClient sleeper(connect());
    sleeper.tell("EVEN:SUBS ON,1;:SYST:CONT:TAKE \"sleeper\"");
    for (int i = 0; i < 100; ++i)
        sleeper.send("EVEN:DATA? 1,1000;DATA? 1,1000;DATA? 1,1000");
    EXPECT_TRUE(waitUntil([&] { return writer.ask("SYST:CONT:OWN?") == "\"\",\"\""; }));
    EXPECT_TRUE(waitUntil([&] { return server.getSessionCount() == 2; }));
}

TEST_F(SessionEndsTest, StaysItselfWhenTheNetworkIsBad)
{
    TestClient bench(connect());
    takeControl();
    EXPECT_EQ(bench.tell("SIM:SIL 1"), good);
    client.send("EVEN:SUBS ON;*IDN?");
    EXPECT_EQ(client.readLine(200ms), std::nullopt);
    TestClient late(connect());
    late.send("*OPC?");
    EXPECT_EQ(late.readLine(100ms), std::nullopt);
    EXPECT_EQ(bench.tell("SIM:SIL 0"), good);
    EXPECT_EQ(client.readLine(), "KES,KESTO-3,00017,2.4.1");
    EXPECT_EQ(late.readLine(), "1");

    const auto now = &std::chrono::steady_clock::now;
    auto begin = now();
    EXPECT_EQ(bench.tell("SIM:DEL 0.3"), good);
    EXPECT_EQ(bench.tell("SIM:INP 1,ON"), good);
    EXPECT_EQ(client.awaitEvent("INP"), "1,1");
    client.send("CURR 1;*OPC?");
    EXPECT_TRUE(waitUntil([this] { return device->getOutputs() != KesDriver::OutputState(); }));
    EXPECT_LT(now() - begin, 300ms) << "neither the bench nor events are slow, nor what is done";
    EXPECT_EQ(client.readLine(), "1");
    EXPECT_EQ(TestClient(connect()).ask("*OPC?"), "1");
    EXPECT_GE(now() - begin, 600ms);
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
        // One that goes makes room.
        clients[2]->close();
        ASSERT_TRUE(waitUntil([&] { return server.getSessionCount() == DeviceServer::mostSessions - 1; }));
        EXPECT_EQ(TestClient("127.7.2.1", port).ask("*OPC?"), "1");
        EXPECT_EQ(device->getOutputs().currents[0].magnitude, 1.0);
        if (round == 0)
            clients.clear();
    }
    EXPECT_FALSE(device->isWorking());
    EXPECT_FALSE(DeviceServer(other).listen("not an address", 1));
}

} // namespace
} // namespace KesTest
