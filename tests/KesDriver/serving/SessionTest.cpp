// What a served device answers and does.

#include "SessionTest.h"

#include <support/SimulatedRelay.h>

#include <KesDriver/scpi/Block.h>

using testing::StartsWith;

namespace KesTest {
namespace {

const std::string zero = ",0,0,0,0,0,0,0,0,0,0,0,0,50,50,0";

TEST_F(SessionTest, TellsAboutTheDevice)
{
    const std::pair<const char*, const char*> cases[] = {
        {"*IDN?", "KES,KESTO-3,00017,2.4.1"},
        {"*TST?;*OPC?", "0;1"},
        {"SYSTEM:VERS?;PROT?;SIM?;:SYST:ERROR:NEXT?;COUN?", "1999.0;1.0;1;0,\"No error\";0"},
        {"syst:lim?", "32,300,10,1000,8,4,450,32,10000000,10000,500"},
        {"SYST:STAT?", "1,0,0,0,IDLE"},
        {"SYST:FAUL?;:CAL:DATE?", "0;\"2026-03-31\""},
        {"SYST:ECHO? -9007199254740992", "-9007199254740992"},
        {"SYST:CONT?;CONT:OWN?", "0;\"\",\"\""},
        {"SYST:WATC?;:SIM:SPE?", "0;1"},
        {"OUTPUT:STAT?;:OUTP:AUX?;:APPL?", "0;0,0;0,0,0,0,0,0,0,0,0,0,0,0,50,50,0"},
        {"SOURCE:CURRENT3:PHAS?;:VOLT:LEV?;:CURR:FREQ?;:DIG?", "0;0;50;0"},
        {"EVEN:LAST?;DATA? 1;:INP:STAT?", "0;\"\";0"},
        {"SEQ:COUN?;:SIM:WIRE:CAT?;:SIM:ENER?;OFF?", "0;\"overcurrent\",\"voltage-frequency\";0;0"},
        {"*STB?;*ESR?;*ESE?;*SRE?;:STAT:OPER?;OPER:COND?;PTR?;NTR?;:STAT:QUES:ENAB?",
         "0;128;0;0;0;0;32767;0;0"},
        {"SYST:ERR?", "0,\"No error\""},
    };
    for (const auto& [query, answer] : cases)
        EXPECT_EQ(client.ask(query), answer) << query;
    for (const char* header : {"SYSTE:ERR?", "SYST", "SYST:ERR", "NEXT?", "OUTP:STATE:X", "*IDN", "SOUR"})
        EXPECT_THAT(client.tell(header), StartsWith("-113,")) << header;
    for (const char* header : {"SYST1:ERR?", "CURR2:FREQ", "CURR:LEV2", "CURR99999999999"})
        EXPECT_THAT(client.tell(header), StartsWith("-114,")) << header;
    // Another start is another number.
    DeviceServer restarted(std::make_shared<SimulatedKesto>(device->getIdentity()));
    EXPECT_NE(client.ask("SYST:BOOT?"), TestClient(restarted.connect()).ask("SYST:BOOT?"));
}

TEST_F(SessionTest, RefusesWithTheCodesOfTheProtocol)
{
    takeControl();
    const auto longSequence = [](int steps) {
        std::string lines;
        while (steps-- > 0)
            lines += "STEP 1" + zero + '\n';
        return "SEQ:DATA " + KesDriver::Scpi::writeBlock(lines);
    };
    const std::pair<std::string, const char*> cases[] = {
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
        {"SYST:WATC 10.1", "-222,"},
        {"SEQ:END ANY,0,1C", "-221,"},
        {"SEQ:STEP 1e30" + zero, "-222,"},
        {longSequence(10001), "-223,"},
        {longSequence(10000) + ";STEP 1" + zero + ";CLE", "-223,"},
        {"SEQ:DATA " + KesDriver::Scpi::writeBlock("STEP 1" + zero + "\nSTEP 1"),
         "-161,\"Invalid block data;line 2\""},
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
        {"SIM:WIRE \"overcurrent\"", "-221,"},
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
    EXPECT_EQ(client.tell("APPL 2 A" + zero.substr(2) + ";:ABOR"), good);
    EXPECT_EQ(client.ask("CURR?;:SIM:ENER?;:SYST:STAT?"), "0;1;1,1,110,1,IDLE");
    EXPECT_EQ(client.tell(step("1", "1") + ";*RST"), good);
    EXPECT_EQ(client.ask("SYST:STAT?;:SEQ:COUN?"), "1,0,0,0,IDLE;0");
}

TEST_F(SessionTest, LetsHappenWhatIsDueBeforeItCarriesOutACommand)
{
    // The contact follows the current at once, and the next command is already there.
    ASSERT_TRUE(device->connectTestObject(std::make_shared<SimulatedRelay>(1.0, 0us, 0us)));
    takeControl();
    EXPECT_EQ(client.tell("EVEN:SUBS ON;" + step("0.01", "2")), good);
    for (int round = 0; round < 20; ++round) {
        ASSERT_EQ(client.tell("CURR 2;:INIT"), good);
        ASSERT_EQ(client.awaitEvent("INP"), "1,1") << "in no step";
        ASSERT_EQ(client.awaitEvent("STEP"), "0");
        ASSERT_EQ(client.awaitEvent("SEQ"), "1");
        ASSERT_EQ(client.awaitEvent("INP"), "1,0");
        EXPECT_EQ(client.ask("CURR 2;:INP:STAT?"), "1");
        EXPECT_EQ(client.tell("ABOR"), good);
        ASSERT_EQ(client.awaitEvent("INP"), "1,1");
        ASSERT_EQ(client.awaitEvent("INP"), "1,0");
    }
}

TEST_F(SessionTest, RunsArmedSequencesOnATriggerAndTakesThemAsABlock)
{
    takeControl();
    client.tell("EVEN:SUBS ON");
    const auto lines = "STEP 0.05,1" + zero.substr(2) +
                       "\r\nRAMP 1,0,0,0,0,0,0,0,0,0,0,0,0,0\n\nANGLE 90\nSTEP 0.01" + zero + '\n';
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
    EXPECT_THAT(client.ask("EVEN:DATA? 465,1"), testing::MatchesRegex("\"465,[0-9]+,INP,1,1\""));
}

TEST_F(SessionTest, TellsFaultsAndLatchesThemInTheRegisters)
{
    takeControl();
    client.tell("EVEN:SUBS ON;:STAT:QUES:ENAB 1;:STAT:OPER:NTR 8;*SRE 8");
    client.tell(step("60", "20") + ";:INIT");
    EXPECT_EQ(client.ask("STAT:OPER:COND?;EVEN?"), "264;264");
    EXPECT_EQ(TestClient(connect()).ask("STAT:OPER:COND?"), "264");
    EXPECT_EQ(client.tell("SIM:BURD 2 OHM"), good);
    EXPECT_EQ(client.awaitEvent("FAULT"), "0,\"IA:100\"");
    EXPECT_EQ(client.awaitEvent("SEQ"), "0");
    EXPECT_EQ(client.ask("SYST:FAUL?;:STAT:QUES:COND?;*STB?;:STAT:QUES?;:STAT:OPER?;:SYST:STAT?"),
              "0,\"IA:100\";1;88;1;8;0,0,0,1,IDLE");
    EXPECT_EQ(client.tell("SIM:BURD 0;FAUL CLE;FAUL HEAT,4;FAUL LOST,5;FAUL QUIC"), good);
    EXPECT_EQ(client.ask("SYST:FAUL?;:STAT:QUES:COND?"), "1,\"UA:010\",\"UB:001\";784");
    EXPECT_EQ(client.tell("SIM:FAUL CLE;INP 3,ON;:SEQ:CLE;" + step("60", "1") + ";END ALL,0,3C,4C;:INIT"),
              good);
    EXPECT_EQ(client.ask("STAT:OPER:COND?"), "264");
    EXPECT_EQ(client.tell("SIM:INP 4,ON"), good);
    EXPECT_EQ(client.awaitEvent("SEQ"), "1");
    // A sequence that is over before anybody can look has run all the same.
    client.ask("STAT:OPER?");
    EXPECT_EQ(client.tell("INIT"), good);
    EXPECT_EQ(client.awaitEvent("SEQ"), "1");
    EXPECT_EQ(client.ask("STAT:OPER?"), "8");
}

TEST_F(SessionTest, SumsUpWhatHasHappenedInTheStatusByte)
{
    takeControl();
    EXPECT_EQ(client.ask("*ESR?"), "128") << "switched on";
    for (const auto& [command, bit] : {std::pair("FOO", "32"), {"CURR 40", "16"}, {"TRIG", "8"}}) {
        client.send(command);
        EXPECT_EQ(client.ask("*ESR?"), bit) << command;
    }
    EXPECT_EQ(client.ask("*STB?;*OPC?;*STB?"), "4;1;20") << "an error; then an answer as well";
    EXPECT_EQ(client.ask("*CLS;*ESE 1;*OPC;*STB?"), "32");
    EXPECT_EQ(client.ask("*SRE 255;*SRE?;:STAT:OPER:ENAB 65535;ENAB?"), "191;32767");
    client.send("OUTP OFF;OUTP ON;:STAT:QUES:ENAB 512;:SIM:FAUL QUIC");
    EXPECT_EQ(client.ask("*STB?"), "232");
    EXPECT_EQ(client.ask("*CLS;*STB?;:STAT:QUES:COND?"), "0;512") << "only what has been latched goes";
    // What the filters do not let through is not latched.
    EXPECT_EQ(client.ask("STAT:OPER:PTR 0;NTR 256;:OUTP OFF;:STAT:OPER?"), "256");
    EXPECT_EQ(client.ask("SIM:FAUL CLE;:OUTP ON;:STAT:OPER?"), "0");
    EXPECT_EQ(client.ask("STAT:PRES;OPER:ENAB?;PTR?;NTR?"), "0;32767;0");
}

TEST_F(SessionTest, WaitsInLockstepForTheController)
{
    EXPECT_THAT(client.tell("SIM:LOCK ON"), StartsWith("-203,"));
    takeControl();
    const auto now = &std::chrono::steady_clock::now;
    // Nothing but the acknowledgement of each event keeps 300 s of device time from being over at once.
    EXPECT_EQ(client.tell("SIM:SPE 100000;LOCK ON;:EVEN:SUBS ON;" + step("100", "1") + ";" +
                          step("100", "2") + ";" + step("100", "1") + ";:INIT"),
              good);
    auto begin = now();
    for (const char* number : {"0", "1"}) {
        EXPECT_EQ(client.awaitEvent("STEP"), number);
        const auto last = std::stoi(client.events.back().substr(1));
        if (last > 1)
            client.send("EVEN:ACKN " + std::to_string(last - 1));
        std::this_thread::sleep_for(50ms);
        EXPECT_EQ(client.readLine(0ms), std::nullopt);
        begin = now();
        client.send("EVEN:ACKN " + std::to_string(last));
    }
    EXPECT_EQ(client.awaitEvent("STEP"), "2");
    EXPECT_LT(now() - begin, 1s);
    // Outputs can be set to zero in the middle of it.
    EXPECT_EQ(client.tell("ABOR"), good);
    EXPECT_EQ(client.awaitEvent("SEQ"), "0");
    // Without an acknowledgement it goes on after two seconds.
    EXPECT_EQ(client.tell("INIT"), good);
    EXPECT_EQ(client.awaitEvent("STEP"), "0");
    begin = now();
    EXPECT_EQ(client.awaitEvent("STEP"), "1");
    EXPECT_GE(now() - begin, 1900ms);
    begin = now();
    EXPECT_EQ(client.tell("SIM:LOCK OFF"), good);
    EXPECT_EQ(client.awaitEvent("SEQ"), "1");
    // It is the controller's, and ends with the control.
    EXPECT_EQ(client.tell("SIM:LOCK ON;:SYST:CONT:REL"), good);
    takeControl();
    EXPECT_EQ(client.tell("INIT"), good);
    EXPECT_EQ(client.awaitEvent("SEQ"), "1");
    EXPECT_LT(now() - begin, 1s);
}

} // namespace
} // namespace KesTest
