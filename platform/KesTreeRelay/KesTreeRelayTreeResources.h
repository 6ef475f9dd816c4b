#pragma once

#include <KesCommon/Export.h>

/// What the relay nodes of a test object bring along beside their code.
class KES_EXPORT KesTreeRelayTreeResources {
public:
    /// Makes the relay icons known to the icon theme. GUI thread, any number of times.
    static void Integrate();
};
