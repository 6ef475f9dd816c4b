#pragma once

#include <KesDriver/net/late/AvahiServices.h>

#include <memory>
#include <string>

namespace KesDriver {

/// Browses through the system's Avahi service. Without one, or without the library that reaches it, nothing
/// is found, and the result says so.
std::unique_ptr<IServiceBrowser> makeAvahiBrowser();

/// Announces through it; null without the library.
std::unique_ptr<IServicePublisher> makeAvahiPublisher(const std::string& name, const ServiceRecord& service);

} // namespace KesDriver
