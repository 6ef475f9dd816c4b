#include <KesCommon/NotifyCollection.h>
#include <KesCommon/Signal.h>

#include "support/LoggedTexts.h"

#include <glibmm/fileutils.h>
#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

using Calls = std::vector<std::string>;

struct Receiver : sigc::trackable {
    explicit Receiver(Calls& log) : calls(log) {}
    void on(int value) { calls.push_back("on " + std::to_string(value)); }
    Calls& calls;
};

class SignalTest : public testing::Test {
protected:
    auto record(std::string name)
    {
        return [this, name](int value) { calls.push_back(name + std::to_string(value)); };
    }

    Calls calls;
    Kes::Signal<void(int)> signal;
};

TEST_F(SignalTest, callsSlotsInOrderOfConnectionUntilDisconnected)
{
    auto first = signal.connect(record("a"));
    signal.connect(record("b"));
    signal.emit(1);
    Kes::Connection(first).disconnect();
    EXPECT_FALSE(first.connected());
    signal(2);
    EXPECT_THAT(calls, ElementsAre("a1", "b1", "b2"));
    signal.clear();
    EXPECT_TRUE(signal.empty());
    EXPECT_FALSE(signal.connect(std::function<void(int)>()).connected());
}

TEST_F(SignalTest, changesDuringAnEmissionFollowItsRules)
{
    Kes::Connection last;
    auto first = signal.connect([&](int value) {
        record("first")(value);
        last.disconnect();
        if (value == 1)
            signal.connect(record("new"));
    });
    last = signal.connect(record("last"));
    signal.emit(1);
    EXPECT_THAT(calls, ElementsAre("first1"));
    signal.emit(2);
    EXPECT_THAT(calls, ElementsAre("first1", "first2", "new2"));
}

TEST_F(SignalTest, aSlotMayEmitItsOwnSignal)
{
    signal.connect([&](int value) {
        if (value < 3)
            signal.emit(value + 1);
    });
    signal.connect(record("v"));
    signal.emit(1);
    EXPECT_THAT(calls, ElementsAre("v3", "v2", "v1"));
}

class SignalFaultTest : public SignalTest {
protected:
    SignalFaultTest()
    {
        signal.connect([](int value) { throw std::runtime_error("fault " + std::to_string(value)); });
        signal.connect(record("after"));
    }

    KesTest::LoggedTexts logged;
};

TEST_F(SignalFaultTest, whatASlotThrowsReachesTheHandlerOrElseTheLogAndNoOneElse)
{
    signal.emit(1);
    EXPECT_THAT(logged.take(), ElementsAre(HasSubstr("fault 1")));
    EXPECT_THAT(calls, ElementsAre("after1"));
    EXPECT_FALSE(Kes::SignalGate::isHeldByThisThread());

    signal.setExceptionHandler([&](const std::string& text) { calls.push_back(text); });
    signal.connect([](int) { throw Glib::FileError(Glib::FileError::FAILED, "of glibmm"); });
    signal.connect([](int) { throw 1; });
    signal.emit(2);
    EXPECT_THAT(calls, ElementsAre("after1", "fault 2", "after2", "of glibmm", "An unknown error occurred."));
    EXPECT_THAT(logged.take(), IsEmpty());
}

TEST_F(SignalFaultTest, aHandlerThatThrowsOrLeadsBackToItsFaultEndsInTheLog)
{
    signal.setExceptionHandler([](const std::string&) { throw std::runtime_error("of the handler"); });
    signal.emit(1);
    EXPECT_THAT(logged.take(), ElementsAre(HasSubstr("fault 1"), HasSubstr("of the handler")));

    // Two signals, each of which tells its faults by way of the other one.
    Kes::Signal<void()> other;
    other.connect([] { throw std::runtime_error("other fault"); });
    other.setExceptionHandler([&](const std::string&) { signal.emit(3); });
    signal.setExceptionHandler([&](const std::string&) { other.emit(); });
    signal.emit(2);
    EXPECT_THAT(logged.take(), ElementsAre(HasSubstr("fault 3")));
    EXPECT_THAT(calls, ElementsAre("after1", "after3", "after2"));
}

/// As one without memory for its text. What cannot even be told leaves the emission, and nothing behind.
TEST(SignalFaultsTest, AnExceptionWithoutATextLeavesTheHandlerInPlace)
{
    struct Speechless : std::exception {
        const char* what() const noexcept override { return nullptr; }
    };
    Kes::Signal<void()> signal;
    int handled = 0;
    signal.setExceptionHandler([&](const std::string&) {
        ++handled;
        throw Speechless();
    });
    signal.connect([] { throw std::runtime_error("fault"); });
    for (int i = 0; i < 3; ++i)
        EXPECT_THROW(signal.emit(), std::logic_error);
    EXPECT_EQ(handled, 3);
}

TEST_F(SignalTest, aSlotOrAHandlerMayDestroyTheSignal)
{
    for (const bool isInHandler : {true, false}) {
        auto owned = std::make_unique<Kes::Signal<void()>>();
        owned->connect([&] { isInHandler ? throw std::runtime_error("fault") : owned.reset(); });
        auto later = owned->connect([&] { calls.push_back("later"); });
        owned->setExceptionHandler([&](const std::string&) { owned.reset(); });
        owned->emit();
        EXPECT_TRUE(calls.empty() && !owned && !later.connected());
    }
}

TEST_F(SignalTest, theDeathOfATrackableCutsItsSlots)
{
    auto receiver = std::make_unique<Receiver>(calls);
    signal.connect(sigc::mem_fun(*receiver, &Receiver::on));
    auto bound = signal.connect(sigc::hide(sigc::bind(sigc::mem_fun(*receiver, &Receiver::on), 7)));
    signal.connect(sigc::track_obj(record("lambda"), *receiver));
    signal.emit(1);
    EXPECT_THAT(calls, ElementsAre("on 1", "on 7", "lambda1"));
    bound.disconnect();
    receiver.reset();
    EXPECT_TRUE(signal.empty());
}

TEST_F(SignalTest, aTrackableMayDieInItsOwnSlot)
{
    auto receiver = std::make_unique<Receiver>(calls);
    signal.connect(sigc::track_obj([&](int) { receiver.reset(); }, *receiver));
    signal.connect(sigc::mem_fun(*receiver, &Receiver::on));
    signal.emit(1);
    EXPECT_TRUE(calls.empty() && signal.empty());
}

TEST_F(SignalTest, aTrackableOutlivesItsSlotsWhicheverThreadCutsThem)
{
    Receiver receiver(calls);
    auto elsewhere = std::make_unique<Kes::Signal<void(int)>>();
    elsewhere->connect(sigc::mem_fun(receiver, &Receiver::on));
    std::thread([&] { elsewhere.reset(); }).join();
    receiver.notify_callbacks();
    EXPECT_TRUE(signal.connect(sigc::mem_fun(receiver, &Receiver::on)).connected());
}

TEST_F(SignalTest, aFunctorIsFreedWhenDisconnectedButNotWhileItRuns)
{
    auto captured = std::make_shared<int>(1);
    const std::weak_ptr<int> alive = captured;
    Kes::Connection connection;
    connection = signal.connect([&, held = std::move(captured)](int) {
        connection.disconnect();
        EXPECT_FALSE(alive.expired());
    });
    signal.emit(1);
    EXPECT_TRUE(alive.expired());
}

class NotifyCollectionTest : public testing::Test {
protected:
    struct Collection : Kes::NotifyCollection<std::string> {
        void _onRemoved(const std::string& item) override { calls.push_back("released " + item); }
        Calls calls;
    };

    NotifyCollectionTest()
    {
        items.signalInserted.connect(
            [this](auto i, auto s) { calls.push_back("+" + std::to_string(i) + s); });
        items.signalRemoved.connect([this](auto i, auto s) { calls.push_back("-" + std::to_string(i) + s); });
        items.signalReset.connect([this] { calls.push_back("reset"); });
    }

    Collection items;
    Calls& calls = items.calls;
};

TEST_F(NotifyCollectionTest, tellsEveryChangeAndClearsTheLastItemFirst)
{
    EXPECT_TRUE(items.add("a") && items.insert(0, "b") && items.insert(99, "c") && items.add("d"));
    EXPECT_THAT(items.getItems(), ElementsAre("b", "a", "c", "d"));
    EXPECT_TRUE(items.remove("a") && items.remove("missing") && items.removeAt(5) && items.removeAt(1));
    EXPECT_TRUE(items.clear());
    EXPECT_THAT(calls, ElementsAre("+0a", "+0b", "+2c", "+3d", "-1a", "released a", "-1c", "released c",
                                   "reset", "-1d", "released d", "-0b", "released b"));
}

TEST_F(NotifyCollectionTest, refusesEveryChangeWhileItIsReadOnly)
{
    ASSERT_TRUE(items.add("a"));
    items.setReadOnly(true);
    EXPECT_FALSE(items.add("b") || items.insert(0, "b") || items.remove("a") || items.removeAt(0));
    EXPECT_FALSE(items.clear());
    EXPECT_THAT(calls, ElementsAre("+0a"));
}

TEST_F(NotifyCollectionTest, clearingEndsThoughAListenerAppends)
{
    ASSERT_TRUE(items.add("a"));
    items.signalRemoved.connect([this](std::size_t, const std::string& s) { (void)items.add(s + "!"); });
    EXPECT_TRUE(items.clear());
    EXPECT_THAT(items.getItems(), ElementsAre("a!"));
}

TEST_F(NotifyCollectionTest, changesOfSeveralThreadsAreHeardInTheirOrder)
{
    Kes::NotifyCollection<int> shared;
    std::vector<int> mirror;
    const auto at = [&](std::size_t i) { return mirror.begin() + static_cast<std::ptrdiff_t>(i); };
    shared.signalInserted.connect([&](std::size_t i, int item) { mirror.insert(at(i), item); });
    shared.signalRemoved.connect([&](std::size_t i, int) { mirror.erase(at(i)); });
    const auto work = [&](int first) {
        for (int i = 0; i < 300; ++i) {
            (void)shared.insert(static_cast<std::size_t>(i % 3), first + i);
            if (i % 3 == 0)
                (void)shared.removeAt(0);
        }
    };
    std::thread other(work, 0);
    work(1000);
    other.join();
    EXPECT_EQ(mirror, shared.getItems());
    EXPECT_EQ(mirror.size(), 400U);
}

} // namespace
