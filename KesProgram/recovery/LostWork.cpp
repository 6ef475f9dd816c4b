#include <KesProgram/recovery/LostWork.h>

#include <filesystem>
#include <utility>

namespace KesProgram {

LostWork::LostWork(Kes::FileLock lock, std::string session, std::string file, RecoveryCopy copy)
    : _lock(std::move(lock)), _session(std::move(session)), _file(std::move(file)), _copy(std::move(copy))
{}

LostWork::~LostWork() = default;
LostWork::LostWork(LostWork&&) noexcept = default;
LostWork& LostWork::operator=(LostWork&&) noexcept = default;

void LostWork::throwAway()
{
    std::error_code ignored;
    std::filesystem::remove(_file, ignored);
}

} // namespace KesProgram
