#include <KesProgram/archive/FileRecentManager.h>

#include <KesCommon/FileSystem.h>

namespace KesProgram {

FileRecentManager::FileRecentManager(unsigned int count) : RecentCollection(count) {}

FileRecentManager::~FileRecentManager() = default;

bool FileRecentManager::_canAdd(const std::string& path)
{
    return Kes::fileExist(path);
}

} // namespace KesProgram
