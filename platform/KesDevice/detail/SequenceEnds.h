#pragma once

#include <thread>
#include <utility>

namespace KesDevice {

/// Whether the end of the sequence that was sent last has been reported to everybody. An end that is
/// still being reported when the next sequence is sent would be taken for the end of that one. Not
/// synchronised.
class SequenceEnds {
public:
    void send() { ++_untold; }
    /// The device has refused what was sent.
    void takeBack() { _tell(); }
    /// The device is ending what it runs: its end will be reported soon.
    void beginEnd() { _isEnding = _untold > 0; }
    /// This thread reports the end from now on.
    void beginTelling()
    {
        beginEnd();
        _teller = std::this_thread::get_id();
    }
    void endTelling()
    {
        _teller = std::thread::id();
        _tell();
    }
    /// Nothing will be reported any more. Whether an end was still to come.
    bool abandon() { return std::exchange(*this, SequenceEnds())._untold > 0; }

    /// Whether to wait before the next sequence is sent; not on the thread that reports.
    bool isBeingTold() const { return _isEnding && _teller != std::this_thread::get_id(); }

private:
    void _tell()
    {
        if (_untold > 0)
            --_untold;
        _isEnding = false;
    }

    unsigned _untold = 0;
    bool _isEnding = false;
    std::thread::id _teller;
};

} // namespace KesDevice
