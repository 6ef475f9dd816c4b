#include <KesDriver/scpi/ErrorQueue.h>

#include <utility>

namespace KesDriver::Scpi {

void ErrorQueue::add(Error error)
{
    if (_errors.size() < capacity)
        _errors.push_back(std::move(error));
    else
        _errors.back() = Error(ErrorCode::QueueOverflow);
}

Error ErrorQueue::take()
{
    if (_errors.empty())
        return Error(ErrorCode::None);
    auto error = std::move(_errors.front());
    _errors.pop_front();
    return error;
}

} // namespace KesDriver::Scpi
