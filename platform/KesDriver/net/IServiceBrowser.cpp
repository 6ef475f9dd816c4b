#include <KesDriver/net/IServiceBrowser.h>

namespace KesDriver {

IServiceBrowser::~IServiceBrowser() = default;

} // namespace KesDriver
