#include <KesCommon/Bell.h>

namespace Kes {

Bell::Ticket Bell::getTicket() const
{
    std::lock_guard lock(_mutex);
    return _rings;
}

void Bell::ring()
{
    std::lock_guard lock(_mutex);
    ++_rings;
    _rung.notify_all();
}

void Bell::sleep(Ticket ticket, TimePoint end) const
{
    std::unique_lock lock(_mutex);
    const auto wasRung = [&] { return _rings != ticket; };
    if (end == never)
        _rung.wait(lock, wasRung);
    else
        _rung.wait_until(lock, end, wasRung);
}

} // namespace Kes
