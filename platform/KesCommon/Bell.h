#pragma once

#include <KesCommon/Export.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace Kes {

/// What a thread sleeps on between two looks at whatever it waits for.
///
/// A sleeper takes a ticket, looks, and sleeps until the bell has been rung since the ticket: a ring between
/// the look and the sleep is not lost, although no lock ties the two together. Any thread.
class KES_EXPORT Bell {
public:
    using Ticket = std::uint64_t;
    using TimePoint = std::chrono::steady_clock::time_point;
    /// The time of a sleep that only a ring ends.
    static constexpr TimePoint never = TimePoint::max();

    Ticket getTicket() const;
    /// Wakes all that sleep, and all that have a ticket and are about to.
    void ring();
    /// Returns when the bell has been rung since the ticket was taken, at the latest at the time.
    void sleep(Ticket ticket, TimePoint end) const;

private:
    mutable std::mutex _mutex;
    mutable std::condition_variable _rung;
    Ticket _rings = 0;
};

} // namespace Kes
