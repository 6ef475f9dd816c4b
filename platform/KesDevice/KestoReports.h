#pragma once

#include <KesDriver/IKestoLink.h>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace KesDevice {

/// Passes a link's reports on to a target that may die at any time, even inside one of them.
///
/// Held by shared pointers: the target's, and its own while it passes a report on. Any thread.
class KestoReports : public KesDriver::IKestoLinkListener, public std::enable_shared_from_this<KestoReports> {
public:
    explicit KestoReports(KesDriver::IKestoLinkListener& target) : _target(target) {}

    /// From its return on the target is not called, and only the caller's own thread may still be inside it.
    void close();
    bool isClosed() const;

    void onInput(const KesDriver::InputEvent& event) override;
    void onStep(const KesDriver::StepEvent& event) override;
    void onSequenceFinished(const KesDriver::SequenceEvent& event) override;
    void onAvary(const KesDriver::KesAvary& avary) override;
    void onConnectionLost() override;

private:
    template <typename Report>
    void _pass(Report report);

    KesDriver::IKestoLinkListener& _target;
    mutable std::mutex _mutex;
    std::condition_variable _passed;
    bool _closed = false;
    std::thread::id _passing;
};

} // namespace KesDevice
