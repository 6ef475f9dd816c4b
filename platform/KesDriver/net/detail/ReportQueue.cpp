#include <KesDriver/net/detail/ReportQueue.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/Log.h>

#include <algorithm>
#include <utility>

namespace KesDriver {

void ReportQueue::setReceiver(std::weak_ptr<IReportReceiver> receiver)
{
    std::lock_guard lock(_mutex);
    _receiver.swap(receiver);
}

bool ReportQueue::start(ConnectionNumber connection, std::function<void()> untaken)
{
    std::lock_guard lock(_mutex);
    _connection = connection;
    _untaken.swap(untaken);
    if (_worker.isRunning())
        return true;
    auto worker = Kes::Worker::tryStart("KesLink_Tell", [self = shared_from_this()] { self->_run(); });
    if (worker)
        _worker = *std::move(worker);
    return worker.has_value();
}

void ReportQueue::stop()
{
    Lock lock(_mutex);
    _stopping = true;
    _deliveries.clear();
    _changed.notify_all();
    if (_isDelivering || _threadId == std::this_thread::get_id())
        return;
    lock.unlock();
    _worker.wait();
}

void ReportQueue::push(ConnectionNumber connection, Report report, Run run)
{
    _add({connection, std::move(report), run});
}

void ReportQueue::callWhenHeard(ConnectionNumber connection, std::function<void()> action)
{
    _add({connection, std::move(action), 0});
}

void ReportQueue::_add(Delivery delivery)
{
    std::lock_guard lock(_mutex);
    if (_stopping)
        return;
    _deliveries.push_back(std::move(delivery));
    _changed.notify_all();
}

void ReportQueue::drop(ConnectionNumber connection)
{
    std::lock_guard lock(_mutex);
    std::erase_if(_deliveries, [=](const Delivery& delivery) { return delivery.connection == connection; });
    _changed.notify_all();
}

void ReportQueue::waitUntilHeard(std::chrono::milliseconds longest)
{
    Lock lock(_mutex);
    if (_threadId != std::this_thread::get_id())
        _changed.wait_for(lock, longest,
                          [this] { return (_deliveries.empty() && !_isDelivering) || _stopping; });
}

void ReportQueue::forgetStepsBefore(Run run)
{
    std::lock_guard lock(_mutex);
    std::erase_if(_deliveries, [=](Delivery& delivery) {
        auto* const report = std::get_if<Report>(&delivery.content);
        return report && delivery.run < run && !removeStep(*report);
    });
}

void ReportQueue::_run()
{
    Lock lock(_mutex);
    _threadId = std::this_thread::get_id();
    while (!_stopping) {
        if (_deliveries.empty())
            _changed.wait(lock);
        else
            _deliverNext(lock);
    }
}

void ReportQueue::_deliverNext(Lock& lock)
{
    auto delivery = std::move(_deliveries.front());
    _deliveries.pop_front();
    auto receiver = _receiver.lock();
    _isDelivering = true;
    lock.unlock();
    bool isTaken = true;
    try {
        if (const auto* const action = std::get_if<std::function<void()>>(&delivery.content))
            (*action)();
        else if (receiver)
            receiver->receive(delivery.connection, std::get<Report>(delivery.content));
    } catch (...) {
        KesLog::Log::writeError("A receiver of reports has thrown: " + Kes::getCurrentExceptionText());
        isTaken = false;
    }
    // May be the last use of the receiver, and with it of the link.
    receiver.reset();
    delivery.content = {};
    lock.lock();
    if (!isTaken)
        _dropUntaken(lock, delivery.connection);
    _isDelivering = false;
    _changed.notify_all();
}

void ReportQueue::_dropUntaken(Lock& lock, ConnectionNumber connection)
{
    if (connection == _connection) {
        // First, since more may be coming.
        const auto untaken = _untaken;
        lock.unlock();
        untaken();
        lock.lock();
    }
    std::erase_if(_deliveries, [=](const Delivery& delivery) {
        const auto* const report = std::get_if<Report>(&delivery.content);
        return delivery.connection == connection &&
               !(report && std::holds_alternative<ConnectionLost>(*report));
    });
}

bool removeStep(Report& report)
{
    if (auto* input = std::get_if<InputEvent>(&report))
        input->step.reset();
    return !std::holds_alternative<StepEvent>(report);
}

} // namespace KesDriver
