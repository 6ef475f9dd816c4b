#include <KesProgram/archive/detail/FormerFile.h>

#include <KesCommon/FileSystem.h>
#include <KesCommon/Log.h>

#include <cstdint>
#include <filesystem>

namespace KesProgram {

namespace {

/// What is larger is no archive of the family: it cannot be opened either.
constexpr std::uintmax_t maxSize = std::uintmax_t{256} << 20;
/// Each one has been left by a save that was cut short.
constexpr int mostBeside = 100;

} // namespace

std::string FormerFile::read(const std::string& path)
{
    std::error_code error;
    if (const auto size = std::filesystem::file_size(path, error); !error && size > maxSize) {
        KesLog::Log::writeWarn("saving " + path + ": the former file is too large to be kept meanwhile");
        return {};
    }
    return Kes::readWholeFile(path);
}

std::string FormerFile::keepBeside(const std::string& path, const std::string& bytes)
{
    for (int number = 1; number <= mostBeside; ++number) {
        const std::string name = path + ".former" + (number > 1 ? std::to_string(number) : std::string());
        if (!Kes::fileExist(name))
            return Kes::writeWholeFile(name, bytes) ? name : std::string();
    }
    return {};
}

} // namespace KesProgram
