#include "AvahiBench.h"
#include "support/WaitUntil.h"

#include <KesDriver/net/ServiceAnnouncement.h>
#include <KesDriver/net/ServiceSearch.h>
#include <KesDriver/net/TcpNetwork.h>

#include <support/LoggedTexts.h>

#include <gmock/gmock.h>

#include <functional>
#include <memory>

namespace {

using namespace KesDriver;
using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

// Nobody else answers there.
const NetAddress first({127, 77, 3, 21}), second({127, 77, 3, 22});
const KestoIdentity identity{{3, 17}, "2.4.1", ""};

FoundDevice device(const NetAddress& address)
{
    return {address, identity.identifer, true, ""};
}

ServiceAnnouncement announce(const NetAddress& address)
{
    return {address, kestoPort, identity, true};
}

class AvahiTest : public testing::Test {
protected:
    static void SetUpTestSuite() { bench = std::make_unique<KesTest::AvahiBench>(); }
    static void TearDownTestSuite() { bench.reset(); }

    void SetUp() override
    {
        if (const auto reason = bench->start(); !reason.empty())
            GTEST_SKIP() << reason;
    }

    /// Searches until so many are found, again and again for a while.
    std::vector<FoundDevice> find(std::size_t count)
    {
        std::vector<FoundDevice> found;
        const auto end = std::chrono::steady_clock::now() + 15s;
        while (found.size() < count && std::chrono::steady_clock::now() < end) {
            found.clear();
            std::stop_source stop;
            result = ServiceSearch(kestoPort).find(
                [&](const FoundDevice& one) {
                    found.push_back(one);
                    if (found.size() == count)
                        stop.request_stop();
                },
                stop.get_token());
        }
        return found;
    }

    static std::unique_ptr<KesTest::AvahiBench> bench;
    Kes::Result result = false;
    KesTest::LoggedTexts log;
};

std::unique_ptr<KesTest::AvahiBench> AvahiTest::bench;

TEST_F(AvahiTest, AnnouncedDevicesAreSeenAndFoundUntilTheyGo)
{
    std::string seen;
    {
        const auto announced = announce(first);
        EXPECT_THAT(find(1), UnorderedElementsAre(device(first)));
        const auto same = announce(second);
        EXPECT_THAT(find(2), UnorderedElementsAre(device(first), device(second)));
        EXPECT_TRUE(result);
        seen = KesTest::AvahiBench::browse();
        EXPECT_THAT(
            seen,
            HasSubstr("KESTO-3\\03200017;_scpi-raw._tcp;local;kesto-127-77-3-21.local;127.77.3.21;5025;"));
        EXPECT_THAT(seen, HasSubstr("KESTO-3\\03200017\\032\\0352;")) << "one of the same name is #2";
        for (const char* entry : {"\"Manufacturer=KES\"", "\"Model=KESTO-3\"", "\"SerialNumber=00017\"",
                                  "\"FirmwareVersion=2.4.1\"", "\"Simulated=1\""})
            EXPECT_THAT(seen, HasSubstr(entry));
    }
    // Caches forget them after a second.
    EXPECT_TRUE(KesTest::waitUntil([&] {
        seen = KesTest::AvahiBench::browse();
        return seen.find("kesto") == std::string::npos;
    })) << seen;
}

TEST_F(AvahiTest, LivesWithoutAServiceAndGoesOnWithANewOne)
{
    const std::function<void()> ends[] = {[] { bench->stop(); }, [] { bench->stopWithBus(); }};
    for (const auto& end : ends) {
        end();
        const auto begin = std::chrono::steady_clock::now();
        result = ServiceSearch(kestoPort).find([&](const FoundDevice&) { ADD_FAILURE(); }, {});
        EXPECT_LT(std::chrono::steady_clock::now() - begin, 2s);
        ASSERT_FALSE(result);
        EXPECT_THAT(result.getError()->getMessage(),
                    HasSubstr("devices can still be entered by their address."));
    }
    const auto early = announce(first);
    EXPECT_TRUE(KesTest::waitUntil([this] {
        const auto isTold = testing::Contains(HasSubstr("127.77.3.21 is not announced in the network: "));
        return testing::Value(log.take(), isTold);
    }));
    for (const auto& end : ends) {
        ASSERT_EQ(bench->start(), "");
        EXPECT_THAT(find(1), UnorderedElementsAre(device(first)));
        end();
    }
}

TEST_F(AvahiTest, KeepsNobodyWaitingWhenTheServiceHangs)
{
    const auto early = announce(first);
    ASSERT_THAT(find(1), UnorderedElementsAre(device(first)));
    const auto time = [](const auto& action) {
        const auto begin = std::chrono::steady_clock::now();
        action();
        return std::chrono::steady_clock::now() - begin;
    };
    std::stop_source stop;
    const auto search = [&] {
        result = ServiceSearch(kestoPort).find([](const FoundDevice&) {}, stop.get_token());
    };
    const auto later = [](std::chrono::milliseconds delay, auto action) {
        return std::jthread([=] {
            std::this_thread::sleep_for(delay);
            action();
        });
    };
    {
        const auto freezing = later(300ms, [] { bench->freeze(); });
        EXPECT_LT(time(search), 5s) << "while it searches";
    }
    for (const auto part : {KesTest::AvahiBench::Part::Service, KesTest::AvahiBench::Part::Bus}) {
        bench->freeze(part);
        stop = {};
        EXPECT_LT(time(search), 4s) << "before it searches";
        ASSERT_FALSE(result);
        EXPECT_THAT(result.getError()->getMessage(),
                    HasSubstr("devices can still be entered by their address."));
        const auto stopping = later(200ms, [&] { stop.request_stop(); });
        EXPECT_LT(time(search), 1s) << "when it is asked to stop";
        EXPECT_TRUE(result);
    }
    bench->thaw(KesTest::AvahiBench::Part::Bus);
    auto late = std::make_unique<ServiceAnnouncement>(second, kestoPort, identity, true);
    std::this_thread::sleep_for(100ms);
    EXPECT_LT(time([&] { late.reset(); }), 1s);
    late = std::make_unique<ServiceAnnouncement>(second, kestoPort, identity, true);
    bench->thaw();
    EXPECT_THAT(find(2), UnorderedElementsAre(device(first), device(second)));
    bench->freeze();
    EXPECT_LT(time([&] { late.reset(); }), 1s) << "while it is announced";
    bench->thaw();
}

} // namespace
