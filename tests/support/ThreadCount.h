#pragma once

#include <fstream>
#include <string>

namespace KesTest {

/// The threads of this process; -1 when they cannot be counted.
inline int countThreads()
{
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind("Threads:", 0) == 0)
            return std::stoi(line.substr(8));
    return -1;
}

} // namespace KesTest
