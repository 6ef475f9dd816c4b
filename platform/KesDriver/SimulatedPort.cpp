#include <KesDriver/SimulatedPort.h>

#include <KesDriver/ServingWait.h>

namespace KesDriver {

void SimulatedPort::setListener(IKestoLinkListener* listener)
{
    std::unique_lock lock(_mutex);
    _listener = listener;
    _delivered.notify_all();
    servingWait(lock, _delivered, [this] {
        return _deliverer == std::thread::id() || _deliverer == std::this_thread::get_id();
    });
}

void SimulatedPort::deliver(const Report& report)
{
    IKestoLinkListener* listener = nullptr;
    {
        std::unique_lock lock(_mutex);
        // A link that has moved from one device to another hears both for a moment. A listener that leaves
        // inside its report ends the wait: it may be about to wait for this thread.
        servingWait(lock, _delivered, [this] { return !_listener || _deliverer == std::thread::id(); });
        if (!_listener)
            return;
        listener = _listener;
        _deliverer = std::this_thread::get_id();
    }
    report(*listener);
    std::lock_guard lock(_mutex);
    _deliverer = std::thread::id();
    _delivered.notify_all();
}

} // namespace KesDriver
