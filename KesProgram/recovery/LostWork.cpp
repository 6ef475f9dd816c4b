#include <KesProgram/recovery/LostWork.h>

#include <KesCommon/FileSystem.h>

#include <sys/stat.h>

#include <filesystem>
#include <utility>

namespace KesProgram {

LostWork::LostWork(Kes::FileLock lock, std::string session, std::string file, RecoveryCopy copy)
    : _lock(std::move(lock)), _session(std::move(session)), _file(std::move(file)), _copy(std::move(copy))
{}

LostWork::~LostWork() = default;
LostWork::LostWork(LostWork&&) noexcept = default;
LostWork& LostWork::operator=(LostWork&&) noexcept = default;

bool LostWork::isFileNewer() const
{
    struct stat status;
    return stat(_copy.fileName.c_str(), &status) == 0 && status.st_mtim.tv_sec > _copy.time &&
           !Kes::fileExist(std::filesystem::path(_file).replace_extension(".former").string());
}

void LostWork::throwAway()
{
    std::error_code ignored;
    std::filesystem::remove(_file, ignored);
}

} // namespace KesProgram
