#pragma once

#include <KesCommon/Export.h>

/// What the relay nodes of a test object bring along beside their code.
class KES_EXPORT KesTreeRelayTreeResources {
public:
    /// Makes the icons of the relay groups known to the icon theme. GUI thread, before or after the display
    /// is opened, any number of times.
    static void Integrate();
};
