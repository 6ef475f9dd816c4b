#pragma once

#include <KesCommon/RecentCollection.h>

#include <string>

namespace KesProgram {

/// The archive files used last, for the File menu and the program's configuration file: only a path at which
/// the file system has an entry gets in. Owned by the model. GUI thread.
class KES_EXPORT FileRecentManager : public Kes::RecentCollection {
public:
    /// `count`: how many paths are kept.
    explicit FileRecentManager(unsigned int count);
    ~FileRecentManager() override;

protected:
    /// Also asked when a list is read back: a file that is gone drops out of it at the next start.
    bool _canAdd(const std::string& path) override;
};

} // namespace KesProgram
