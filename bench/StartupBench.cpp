// The time from the start of a process to its first drawn frame: a program against a bare gtkmm window.
//
//     StartupBench [PROGRAM [ROUNDS]]
//
// The program is kes-overcurrent beside this one unless another is named. Both are started by turns, so
// that neither has the warmer caches; the first round warms them and does not count.

#include "FirstFrameWatch.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr std::chrono::seconds limit{30};
constexpr double allowedRatio = 1.5;

pid_t start(const std::string& program)
{
    const pid_t process = fork();
    if (process == 0) {
        execl(program.c_str(), program.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    if (process < 0)
        throw std::runtime_error("cannot start a process");
    return process;
}

/// In milliseconds.
double measureStart(FirstFrameWatch& watch, const std::string& program)
{
    const auto begin = std::chrono::steady_clock::now();
    const pid_t process = start(program);
    const bool drawn = watch.wait(process, limit);
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - begin;
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
    if (!drawn)
        throw std::runtime_error(program + " has not drawn a window");
    return time.count();
}

double getMedian(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char** argv)
try {
    const auto folder = std::filesystem::canonical("/proc/self/exe").parent_path();
    const std::string bare = folder / "bare-window";
    const std::string program = argc > 1 ? argv[1] : (folder / "kes-overcurrent").string();
    const int rounds = argc > 2 ? std::max(1, std::atoi(argv[2])) : 15;
    FirstFrameWatch watch;
    std::vector<double> bareTimes;
    std::vector<double> programTimes;
    for (int i = 0; i <= rounds; ++i) {
        const double bareTime = measureStart(watch, bare);
        const double programTime = measureStart(watch, program);
        if (i == 0)
            continue;
        bareTimes.push_back(bareTime);
        programTimes.push_back(programTime);
    }
    const double ratio = getMedian(programTimes) / getMedian(bareTimes);
    std::printf("bare window  %7.1f ms to the first frame\n", getMedian(bareTimes));
    std::printf("program      %7.1f ms to the first frame\n", getMedian(programTimes));
    std::printf("ratio        %7.2f (at most %.1f)\n", ratio, allowedRatio);
    return ratio <= allowedRatio ? 0 : 1;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 2;
}
