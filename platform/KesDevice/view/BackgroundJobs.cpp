#include <KesDevice/view/BackgroundJobs.h>

#include <KesCommon/ThreadHelper.h>

#include <utility>

namespace KesDevice {

BackgroundJobs::BackgroundJobs() : _guard(std::make_unique<Kes::UpdateViewGuard>()) {}

BackgroundJobs::~BackgroundJobs()
{
    // Joining serves the queue, where completions of these very threads may stand.
    auto threads = std::exchange(_threads, {});
    for (auto& thread : threads)
        Kes::ThreadHelper::join(thread);
}

void BackgroundJobs::run(const std::string& threadName, std::weak_ptr<Kes::LifetimeToken> owner, Work work)
{
    const auto place = _threads.emplace(_threads.end());
    *place = std::thread([this, place, threadName, owner = std::move(owner), work = std::move(work)] {
        Kes::ThreadHelper::setCurrentThreadName(threadName);
        auto completion = work();
        _guard->safeBeginUpdateView([this, place, owner, completion = std::move(completion)] {
            if (_threads.empty())
                return;
            Kes::ThreadHelper::join(*place);
            _threads.erase(place);
            if (owner.lock() && completion)
                completion();
        });
    });
}

} // namespace KesDevice
