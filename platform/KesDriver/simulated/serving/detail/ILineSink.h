#pragma once

#include <string>

namespace KesDriver {

/// Where lines go that a session is to get. Any thread; never waits.
class ILineSink {
public:
    virtual ~ILineSink() = default;
    /// Without the line end.
    virtual void send(std::string line) = 0;
};

} // namespace KesDriver
