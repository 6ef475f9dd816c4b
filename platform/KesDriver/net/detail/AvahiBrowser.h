#pragma once

#include <KesDriver/net/IServiceBrowser.h>

#include <memory>

namespace KesDriver {

/// Browses through the system's Avahi service. Without one nothing is found, and the result says so.
std::unique_ptr<IServiceBrowser> makeAvahiBrowser();

} // namespace KesDriver
