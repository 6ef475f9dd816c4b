#include "SettingsWindowTest.h"

#include <condition_variable>
#include <mutex>

namespace {

using KesDriver::FoundDevice;
using KesTest::address;
using KesTest::waitFor;
using testing::ElementsAre;

/// A network in which devices are found when the test says so.
class FakeNetwork : public KesDriver::IKestoNetwork {
public:
    void give(const FoundDevice& device)
    {
        std::unique_lock lock(_mutex);
        _changed.wait(lock, [this] { return _found != nullptr; });
        (*_found)(device);
    }
    void give(const char* text, const char* owner = "") { give({address(text), {3, 17}, false, owner}); }
    void end(const Kes::Result& result)
    {
        std::lock_guard lock(_mutex);
        _result = result;
        _changed.notify_all();
    }
    bool wasStopped() const { return _wasStopped; }

    Kes::Result find(const KesDriver::FoundListener& found, std::stop_token stop) override
    {
        std::unique_lock lock(_mutex);
        _found = &found;
        _changed.notify_all();
        _wasStopped = !_changed.wait(lock, stop, [this] { return _result.has_value(); });
        _found = nullptr;
        return std::exchange(_result, std::nullopt).value_or(true);
    }
    std::unique_ptr<KesDriver::IKestoLink> createLink(const KesDriver::NetAddress& at) override
    {
        return _nothing.createLink(at);
    }

private:
    std::mutex _mutex;
    std::condition_variable_any _changed;
    const KesDriver::FoundListener* _found = nullptr;
    std::optional<Kes::Result> _result;
    std::atomic<bool> _wasStopped = false;
    KesDriver::SimulatedNetwork _nothing;
};

class DeviceSearchTest : public KesTest::SettingsWindowTest {
protected:
    DeviceSearchTest()
    {
        hardware = KesDevice::HardwareManager::create(fake);
        open();
        click("Search");
    }

    std::vector<std::string> getAddresses()
    {
        auto addresses = getTexts();
        std::erase_if(addresses, [](const auto& text) { return !KesDevice::Kesto::Address::parse(text); });
        return addresses;
    }

    const std::shared_ptr<FakeNetwork> fake = std::make_shared<FakeNetwork>();
};

TEST_F(DeviceSearchTest, DevicesAppearAsTheyAreFound)
{
    fake->give("10.0.0.20", "Anna");
    ASSERT_TRUE(waitFor([this] { return reads("10.0.0.20"); }));
    EXPECT_TRUE(reads("Searching the network…"));
    EXPECT_TRUE(reads("KESTO-3 No. 00017"));
    EXPECT_TRUE(reads("in use by Anna"));
    fake->give({address("10.0.0.3"), {4, 2}, true, ""});
    fake->give("10.0.0.20");
    ASSERT_TRUE(waitFor([this] { return !reads("in use by Anna"); }));
    EXPECT_THAT(getAddresses(), ElementsAre("10.0.0.3", "10.0.0.20"));
    EXPECT_TRUE(reads("KESTO-4 No. 00002, simulated"));
    click("Add 10.0.0.20");
    EXPECT_THAT(getAddresses(), ElementsAre("10.0.0.20", "10.0.0.3", "10.0.0.20"));
    EXPECT_FALSE(named<Gtk::Button>("Add 10.0.0.20"));
    EXPECT_TRUE(waitFor([this] { return reads("there is no device at this address"); }))
        << "it has been asked";
    fake->end(true);
    EXPECT_TRUE(waitFor([this] { return reads("Found in the network:"); }));
}

TEST_F(DeviceSearchTest, SaysWhenItIsNotCompleteUntilTheNextSearch)
{
    fake->give("10.0.0.3");
    fake->end(Kes::Result::failure("No neighbours; go and see."));
    ASSERT_TRUE(waitFor([this] { return reads("No neighbours; go and see."); }));
    EXPECT_TRUE(reads("10.0.0.3"));
    click("Search");
    EXPECT_FALSE(reads("No neighbours"));
    EXPECT_FALSE(reads("10.0.0.3"));
    fake->end(true);
    EXPECT_TRUE(waitFor([this] { return reads("No devices were found in the network."); }));
}

TEST_F(DeviceSearchTest, TheKeyboardComesBackUnlessTheUserHasGoneElsewhere)
{
    auto& search = *named<Gtk::Button>("Search");
    for (const bool isElsewhere : {false, true}) {
        fake->end(true);
        ASSERT_TRUE(waitFor([&] { return search.is_sensitive(); }));
        search.grab_focus();
        click("Search");
        if (isElsewhere)
            addressEntry().grab_focus();
        fake->end(true);
        ASSERT_TRUE(waitFor([&] { return search.is_sensitive(); }));
        EXPECT_EQ(search.is_focus(), !isElsewhere);
        click("Search");
    }
}

TEST_F(DeviceSearchTest, ShowsNoMoreThanItCan)
{
    for (unsigned i = 300; i-- > 0;)
        fake->give(("10.0." + std::to_string(i / 250) + '.' + std::to_string(i % 250)).c_str());
    fake->end(true);
    ASSERT_TRUE(
        waitFor([this] { return reads("There are more devices in the network; only 256 are shown."); }));
    EXPECT_EQ(getAddresses().size(), 256U);
}

TEST_F(DeviceSearchTest, ShowsHostileNamesAsPlainText)
{
    const std::pair<std::string, std::string> names[] = {
        {"<b>bold</b> &amp; %s", "<b>bold</b> &amp; %s"},
        {"two\nlines\x1b[31m \xe2\x80\xae"
         "rtl",
         "twolines[31m rtl"},
        {"bytes \xff\xc3", "bytes \xef\xbf\xbd\xef\xbf\xbd"},
        {std::string(100000, 'y'), std::string(63, 'y') + "…"},
        {"\x01\x02", "?"},
    };
    int narrowest = 0, narrowestBefore = 0, natural = 0;
    content()->get_preferred_width(narrowestBefore, natural);
    for (const auto& [name, shown] : names) {
        fake->give("10.0.0.3", name.c_str());
        EXPECT_TRUE(waitFor([&, &text = shown] {
            const auto texts = getTexts();
            return std::find(texts.begin(), texts.end(), "in use by " + text) != texts.end();
        })) << shown;
        content()->get_preferred_width(narrowest, natural);
        EXPECT_LE(narrowest, narrowestBefore) << shown;
    }
    fake->end(true);
}

TEST_F(DeviceSearchTest, EndsWithTheWindow)
{
    click("Cancel");
    EXPECT_TRUE(waitFor([this] { return fake->wasStopped(); }));
    open();
    click("Search");
    fake->give("10.0.0.3");
    const auto begin = std::chrono::steady_clock::now();
    presenter.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
}

} // namespace
