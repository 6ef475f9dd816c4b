#include "LineServer.h"
#include "support/Message.h"

#include <KesDriver/net/ServiceSearch.h>
#include <KesDriver/net/TcpNetwork.h>
#include <KesDriver/simulated/serving/DeviceServer.h>

#include <gmock/gmock.h>

namespace {

using namespace KesDriver;
using namespace std::chrono_literals;
using KesTest::LineServer;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Clock = std::chrono::steady_clock;

NetAddress address(unsigned last, unsigned third = 1)
{
    return NetAddress({127, 0, static_cast<std::uint8_t>(third), static_cast<std::uint8_t>(last)});
}

class FakeBrowser : public IServiceBrowser {
public:
    FakeBrowser(std::vector<ServiceRecord> services, Kes::Result result)
        : _services(std::move(services)), _result(std::move(result))
    {}
    void start(Listener listener) override
    {
        for (const auto& service : _services)
            listener(service);
    }
    Kes::Result getResult() const override { return _result; }

private:
    const std::vector<ServiceRecord> _services;
    const Kes::Result _result;
};

class ServiceSearchTest : public testing::Test {
protected:
    void announce(const NetAddress& at,
                  std::vector<std::string> text = {"Manufacturer=KES", "Model=KESTO-3", "SerialNumber=00017"})
    {
        services.push_back({at, server.getPort(), std::move(text)});
    }
    /// A device that is announced, and answers so.
    void serve(unsigned last, std::string answer, std::chrono::milliseconds delay = 0ms)
    {
        announce(address(last));
        server.serve(address(last), std::move(answer), delay);
    }
    Kes::Result search() { return search(server.getPort()); }
    Kes::Result search(std::uint16_t port)
    {
        found.clear();
        const ServiceSearch searching(
            port, [&] { return std::make_unique<FakeBrowser>(services, result); }, 50ms);
        return searching.find([&](const FoundDevice& device) { found.push_back(device); }, stop.get_token());
    }

    LineServer server;
    std::vector<ServiceRecord> services;
    Kes::Result result = true;
    std::vector<FoundDevice> found;
    std::stop_source stop;
};

const KestoIdentifer announced(3, 17);

TEST_F(ServiceSearchTest, WhatADeviceTellsCounts)
{
    serve(2, "KES,KESTO-4,00042,2.4.1;1;\"Anna; \"\"A\"\"\",\"10.0.0.5\"\r\n");
    serve(3, "KES,KESTO-4,00043,2.4.1;0;\"\",\"\"\n");
    serve(4, "KES,KESTO-4,00044,2.4.1;0;\"\",\"10.0.0.5\"\n");
    announce(address(2));
    EXPECT_TRUE(search());
    EXPECT_THAT(found, UnorderedElementsAre(FoundDevice{address(2), {4, 42}, true, "Anna; \"A\""},
                                            FoundDevice{address(3), {4, 43}, false, ""},
                                            FoundDevice{address(4), {4, 44}, false, "10.0.0.5"}));
    EXPECT_EQ(server.getLine(), "*IDN?;:SYST:SIM?;:SYST:CONT:OWN?");
}

TEST_F(ServiceSearchTest, ServedDevicesTellWhoControlsThem)
{
    DeviceServer served(std::make_shared<SimulatedKesto>(KestoIdentifer(4, 42)));
    ASSERT_TRUE(served.listen("127.0.0.1", 0));
    const NetAddress local({127, 0, 0, 1});
    announce(local);
    services.back().port = served.getPort();
    const auto link = TcpNetwork(served.getPort()).createLink(local);
    ConnectionNumber connection = 0;
    ASSERT_TRUE(link->connect(connection));
    EXPECT_TRUE(search(served.getPort()));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_THAT(found.front().owner, HasSubstr("@")) << "program and computer";
    EXPECT_TRUE(link->stopOutputs()) << "the search has taken no control";
}

TEST_F(ServiceSearchTest, OnlyWhatIsAnnouncedAsAKestoCounts)
{
    announce(address(2), {"manufacturer=KES", "MODEL=KESTO-5", "SerialNumber=4294967295", "Simulated=1",
                          "Simulated=0", "", "=", "Model", "Model=other"});
    announce(address(3), {"Manufacturer=ABC", "Model=KESTO-3", "SerialNumber=00017"});
    announce(address(4), {"Manufacturer=KES", "Model=KESTO-99999", "SerialNumber=00017"});
    announce(address(5), {"Manufacturer=KES", "Model=KESTO-3", "SerialNumber=4294967296"});
    announce(address(6), {"Manufacturer=KES", "Model=KESTO-3,00001,x"});
    announce(address(7), {});
    announce(NetAddress({224, 0, 0, 251}));
    services.push_back({address(8), 80, {"Manufacturer=KES", "Model=KESTO-3", "SerialNumber=00017"}});
    EXPECT_TRUE(search());
    EXPECT_THAT(found, UnorderedElementsAre(FoundDevice{address(2), {5, 4294967295U}, true, ""}));
}

TEST_F(ServiceSearchTest, ADeviceWithoutAGoodAnswerIsAsAnnounced)
{
    const std::string answers[] = {
        "",
        "\n",
        "hello\n",
        "KES,KESTO-4,00042,1;1;\"Anna\",\"\"",
        "KES,KESTO-4,00042,1;1\n",
        "KES,KESTO-4,00042,1;2;\"\",\"\"\n",
        "KES,KESTO-4,00042,1;1;\"Anna\n",
        "ABC,KESTO-4,00042,1;1;\"\",\"\"\n",
        std::string(1 << 20, 'x'),
        std::string(5000, ';') + "\n",
    };
    unsigned last = 2;
    for (const auto& answer : answers)
        serve(last++, answer);
    const auto begin = Clock::now();
    EXPECT_TRUE(search());
    EXPECT_LT(Clock::now() - begin, 2500ms);
    EXPECT_EQ(found.size(), std::size(answers));
    for (const auto& device : found)
        EXPECT_EQ(device.identifer, announced) << device.address.to_string();
}

TEST_F(ServiceSearchTest, AsksAFewDevicesAtATime)
{
    for (unsigned last = 1; last <= 20; ++last)
        serve(last, "KES,KESTO-4,00042,2.4.1;1;\"\",\"\"\n", 150ms);
    EXPECT_TRUE(search());
    EXPECT_EQ(found.size(), 20U);
    for (const auto& device : found)
        EXPECT_EQ(device.identifer, KestoIdentifer(4, 42));
    EXPECT_EQ(server.getMostAtATime(), 8U);
}

TEST_F(ServiceSearchTest, SaysWhyItHasNotFoundAllAndTellsWhatItFound)
{
    serve(2, "KES,KESTO-4,00042,2.4.1;1;\"\",\"\"\n", 20ms);
    result = Kes::Result::failure("No service.");
    EXPECT_EQ(KesTest::message(search()), "No service.");
    EXPECT_THAT(found, UnorderedElementsAre(FoundDevice{address(2), {4, 42}, true, ""}));
    result = true;
    for (unsigned i = 0; i < 300; ++i)
        announce(address(i % 200 + 1, 2 + i / 200));
    EXPECT_EQ(KesTest::message(search()), "There are more devices in the network than a search can find.");
    EXPECT_EQ(found.size(), ServiceSearch::mostDevices);
}

TEST_F(ServiceSearchTest, EndsWhenItIsAskedTo)
{
    for (unsigned last = 1; last <= 10; ++last)
        serve(last, "");
    const std::jthread stopping([this] {
        std::this_thread::sleep_for(100ms);
        stop.request_stop();
    });
    const auto begin = Clock::now();
    EXPECT_TRUE(search());
    EXPECT_LT(Clock::now() - begin, 900ms) << "before an answer is given up";
    EXPECT_THAT(found, IsEmpty());
}

} // namespace
