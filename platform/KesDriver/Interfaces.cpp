#include <KesDriver/IKestoLink.h>
#include <KesDriver/IKestoNetwork.h>

namespace KesDriver {

IReportReceiver::~IReportReceiver() = default;

IKestoLink::~IKestoLink() = default;

IKestoNetwork::~IKestoNetwork() = default;

} // namespace KesDriver
