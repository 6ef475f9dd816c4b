#include <KesCommon/ChildProcess.h>

#include <giomm/init.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace {

using namespace std::chrono_literals;
using Kes::ChildProcess;
using End = ChildProcess::End;

TEST(ChildProcessTest, tellsHowTheProgramEnded)
{
    EXPECT_TRUE(ChildProcess::run({"true"}, 10s).isSuccess());
    const auto failed = ChildProcess::run({"sh", "-c", "echo nothing; printf 'why\\377' >&2; exit 3"}, 10s);
    EXPECT_EQ(failed.end, End::Exited);
    EXPECT_EQ(failed.status, 3);
    EXPECT_EQ(failed.errors, "why\uFFFD");
    EXPECT_FALSE(ChildProcess::run({"sh", "-c", "kill -9 $$"}, 10s).isSuccess());
    EXPECT_EQ(ChildProcess::run({"no-such-program-anywhere"}, 10s).end, End::NotFound);
    const auto refused = ChildProcess::run({"/etc/passwd"}, 10s);
    EXPECT_EQ(refused.end, End::NotStarted);
    EXPECT_FALSE(refused.errors.empty());
}

TEST(ChildProcessTest, passesArgumentsAsTheyAreAndNoInput)
{
    EXPECT_EQ(ChildProcess::run({"sh", "-c", "printf %s \"$1\" >&2; cat", "", "$(id) 'x' *"}, 10s).errors,
              "$(id) 'x' *");
}

/// How long the program was waited for, which would run for a minute.
std::chrono::duration<double> timeRun(std::chrono::milliseconds limit,
                                      const Glib::RefPtr<Gio::Cancellable>& cancellable, End expected)
{
    const auto begin = std::chrono::steady_clock::now();
    const auto outcome = ChildProcess::run({"sleep", "60"}, limit, cancellable);
    EXPECT_EQ(outcome.end, expected);
    EXPECT_FALSE(outcome.isSuccess());
    return std::chrono::steady_clock::now() - begin;
}

TEST(ChildProcessTest, endsInTimeAndWhenItIsCancelled)
{
    EXPECT_LT(timeRun(50ms, {}, End::TimedOut), 20s);
    Gio::init();
    const auto before = Gio::Cancellable::create();
    before->cancel();
    EXPECT_LT(timeRun(60s, before, End::Cancelled), 20s);
    const auto during = Gio::Cancellable::create();
    std::thread other([&] {
        std::this_thread::sleep_for(50ms);
        during->cancel();
    });
    EXPECT_LT(timeRun(60s, during, End::Cancelled), 20s);
    other.join();
}

} // namespace
