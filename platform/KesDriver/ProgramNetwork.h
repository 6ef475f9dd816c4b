#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/IKestoNetwork.h>

#include <memory>

namespace KesDriver {

/// What programs use when they say nothing else: the devices of the embedded network, and at every other
/// address what speaks the network protocol there. Who is embedded is decided when a link is made. Any
/// thread; made at first use.
KES_EXPORT std::shared_ptr<IKestoNetwork> getProgramNetwork();

} // namespace KesDriver
