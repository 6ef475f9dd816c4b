#pragma once

#include <KesCommon/Worker.h>
#include <KesDriver/Report.h>

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <variant>

namespace KesDriver {

/// Delivers the reports of one link's connections on a thread of its own, one after the other. Shared by the
/// link and the thread, which ends by itself after `stop`. Any thread.
class ReportQueue : public std::enable_shared_from_this<ReportQueue> {
public:
    /// The runs of a device's sequences, as far as its events show.
    using Run = std::uint64_t;

    void setReceiver(std::weak_ptr<IReportReceiver> receiver);

    /// Before the first report of a connection; false when the system has no thread to give. `untaken` is
    /// called on the thread when a receiver throws; after that, nothing is left of the connection but its
    /// loss, for who has missed a report must not take what follows for the whole.
    bool start(ConnectionNumber connection, std::function<void()> untaken);
    /// Delivers nothing more. Waits for the thread unless it is with a receiver.
    void stop();

    void push(ConnectionNumber connection, Report report, Run run);
    /// Calls it on the thread when what has been pushed so far has been heard; not when that is dropped.
    void callWhenHeard(ConnectionNumber connection, std::function<void()> action);
    /// What is left of a connection is not delivered any more.
    void drop(ConnectionNumber connection);

    /// Returns when all is delivered, at once on the thread itself, and after the time at the latest: a
    /// receiver may wait for the caller.
    void waitUntilHeard(std::chrono::milliseconds longest);
    /// What is left of earlier runs would be taken for steps of this one: drops their steps, and lets their
    /// inputs have none.
    void forgetStepsBefore(Run run);

private:
    struct Delivery {
        ConnectionNumber connection;
        std::variant<Report, std::function<void()>> content;
        Run run;
    };
    using Lock = std::unique_lock<std::mutex>;

    void _run();
    void _add(Delivery delivery);
    void _deliverNext(Lock& lock);
    void _dropUntaken(Lock& lock, ConnectionNumber connection);

    std::mutex _mutex;
    std::condition_variable _changed;
    std::deque<Delivery> _deliveries;
    std::weak_ptr<IReportReceiver> _receiver;
    /// The last connection that has been started.
    ConnectionNumber _connection = 0;
    std::function<void()> _untaken;
    bool _isDelivering = false;
    bool _stopping = false;
    std::thread::id _threadId;
    Kes::Worker _worker;
};

/// Takes the step out of a report; false when nothing is left of it.
bool removeStep(Report& report);

} // namespace KesDriver
