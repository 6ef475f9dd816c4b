#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/net/IServiceBrowser.h>

#include <string>

namespace KesDriver {

/// Keeps a service announced as long as it lives.
class IServicePublisher {
public:
    virtual ~IServicePublisher() = default;
};

/// The library of the functions below.
inline constexpr const char* avahiLibrary = "KesAvahi";

/// Browses through the system's Avahi service. Without one nothing is found, and the result says so. The
/// caller owns it.
extern "C" KES_EXPORT IServiceBrowser* kesMakeAvahiBrowser();

/// Announces through the system's Avahi service, whenever there is one. Belongs to one thread, whose default
/// main context it works in. The caller owns it. `name` is the service's, as long as nobody else has it.
extern "C" KES_EXPORT IServicePublisher* kesMakeAvahiPublisher(const std::string& name,
                                                               const ServiceRecord& service);

} // namespace KesDriver
