#pragma once

#include <KesCommon/Export.h>

/// What the test-object tree brings along beside its code.
class KES_EXPORT KesTreeResources {
public:
    /// Makes the icons of the tree known to the icon theme: "kes-node-<id>-symbolic" for groups with an icon
    /// of their own; the others have none. GUI thread, before or after the display is opened, any number of
    /// times.
    static void Integrate();
};
