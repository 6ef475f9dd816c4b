#include <KesDevice/KestoReports.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/Log.h>
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
    try {
        report(_target);
    } catch (...) {
        // The link's thread goes on with the next report, and the program with switching the outputs off.
        KesLog::Log::writeError("A receiver of a device's report has thrown: " +
                                Kes::getCurrentExceptionText());
    }
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
