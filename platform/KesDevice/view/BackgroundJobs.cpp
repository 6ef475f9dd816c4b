#include <KesDevice/view/BackgroundJobs.h>

#include <utility>

namespace KesDevice {

BackgroundJobs::BackgroundJobs() : _guard(std::make_unique<Kes::UpdateViewGuard>()) {}

BackgroundJobs::~BackgroundJobs()
{
    // The end of a worker is waited for with the queue being served, where completions of these very
    // workers may stand.
    const auto workers = std::exchange(_workers, {});
}

bool BackgroundJobs::run(const std::string& threadName, std::weak_ptr<Kes::LifetimeToken> owner, Work work)
{
    const auto place = _workers.emplace(_workers.end());
    auto worker =
        Kes::Worker::tryStart(threadName, [this, place, owner = std::move(owner), work = std::move(work)] {
            auto completion = work();
            _guard->safeBeginUpdateView([this, place, owner, completion = std::move(completion)] {
                if (_workers.empty())
                    return;
                _workers.erase(place);
                if (owner.lock() && completion)
                    completion();
            });
        });
    if (!worker) {
        _workers.erase(place);
        return false;
    }
    // What the job has completed meanwhile comes later: it needs this thread.
    *place = std::move(*worker);
    return true;
}

void BackgroundJobs::report(std::weak_ptr<Kes::LifetimeToken> owner, std::function<void()> function) const
{
    _guard->safeBeginUpdateView([owner = std::move(owner), function = std::move(function)] {
        if (owner.lock())
            function();
    });
}

} // namespace KesDevice
