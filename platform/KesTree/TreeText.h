#pragma once

#include <KesCommon/Export.h>

#include <string>

namespace lng {

/// The texts of the test-object tree, by key, in the language of the process. Any thread.
class KES_EXPORT Tree {
public:
    /// An unknown key is returned itself, as the caller's own character data.
    static const char* get(const std::string& key);
};

} // namespace lng
