#include <KesDriver/IKestoLink.h>

namespace KesDriver {

IKestoLinkListener::~IKestoLinkListener() = default;

IKestoLink::~IKestoLink() = default;

} // namespace KesDriver
