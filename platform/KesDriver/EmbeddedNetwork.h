#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/IKestoNetwork.h>

#include <memory>

/// The network that every program has without any setting: simulated devices inside its own process, at first
/// one, KESTO-3 No. 00001 at 127.0.0.1. Any thread; made at first use.
namespace KesDriver {

/// 127.0.0.1.
inline constexpr NetAddress embeddedAddress{NetAddress::Bytes{127, 0, 0, 1}};

KES_EXPORT std::shared_ptr<IKestoNetwork> getEmbeddedNetwork();

} // namespace KesDriver
