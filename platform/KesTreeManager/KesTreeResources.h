#pragma once

#include <KesCommon/Export.h>

/// What the test-object tree brings along beside its code.
class KES_EXPORT KesTreeResources {
public:
    /// Makes the tree's icons known to the icon theme. GUI thread, any number of times.
    static void Integrate();
};
