#include <KesDevice/KestoReports.h>

#include <KesDriver/ServingWait.h>

namespace KesDevice {

void KestoReports::close()
{
    std::unique_lock lock(_mutex);
    _closed = true;
    KesDriver::servingWait(lock, _passed, [this] {
        return _passing == std::thread::id() || _passing == std::this_thread::get_id();
    });
}

bool KestoReports::isClosed() const
{
    std::lock_guard lock(_mutex);
    return _closed;
}

template <typename Report>
void KestoReports::_pass(Report report)
{
    const auto self = shared_from_this();
    {
        std::lock_guard lock(_mutex);
        if (_closed)
            return;
        _passing = std::this_thread::get_id();
    }
    report(_target);
    std::lock_guard lock(_mutex);
    _passing = std::thread::id();
    _passed.notify_all();
}

void KestoReports::onInput(const KesDriver::InputEvent& event)
{
    _pass([&](IKestoLinkListener& target) { target.onInput(event); });
}

void KestoReports::onStep(const KesDriver::StepEvent& event)
{
    _pass([&](IKestoLinkListener& target) { target.onStep(event); });
}

void KestoReports::onSequenceFinished(const KesDriver::SequenceEvent& event)
{
    _pass([&](IKestoLinkListener& target) { target.onSequenceFinished(event); });
}

void KestoReports::onAvary(const KesDriver::KesAvary& avary)
{
    _pass([&](IKestoLinkListener& target) { target.onAvary(avary); });
}

void KestoReports::onConnectionLost()
{
    _pass([](IKestoLinkListener& target) { target.onConnectionLost(); });
}

} // namespace KesDevice
