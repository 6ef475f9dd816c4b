#include <KesDevice/detail/KnownFault.h>

#include <utility>

namespace KesDevice {

namespace {

/// A fault that has not been repeated for so long had gone.
constexpr std::chrono::seconds longestSilence{3};

} // namespace

bool KnownFault::isNews(const KesDriver::KesAvary& record, Time now)
{
    const bool isSilenceOver = now - std::exchange(_heardAt, now) > longestSilence;
    const auto expected = std::exchange(_expected, std::nullopt);
    const bool isExpected = expected && expected->find(describeFaults(record)) != std::string::npos;
    const bool isKnown = isExpected || _record == record;
    _record = record;
    return isSilenceOver || !isKnown;
}

} // namespace KesDevice
