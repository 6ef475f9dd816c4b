#include <KesProgram/shell/detail/NameOwner.h>

#include <KesCommon/FileStream.h>
#include <KesCommon/FileSystem.h>

#include <filesystem>

namespace KesProgram::NameOwner {

namespace {

std::string getNote(const std::string& path)
{
    return path + ".owner";
}

} // namespace

const std::string& getExecutable()
{
    // An upgrade replaces the file while the program runs, and the system then names it otherwise.
    static const std::string name = [] {
        std::error_code ignored;
        return std::filesystem::read_symlink("/proc/self/exe", ignored).filename().string();
    }();
    return name;
}

void claim(const std::string& path)
{
    // Not brought to the disk, which would hold up the end of the program: the next one would write it again.
    if (Kes::readWholeFile(getNote(path)).empty())
        Kes::openOutputFileUTF8Name(getNote(path)) << getExecutable();
}

std::string distinguish(const std::string& path)
{
    const std::string owner = Kes::readWholeFile(getNote(path));
    if (owner.empty() || owner == getExecutable())
        return path;
    const std::filesystem::path whole(path);
    return whole.parent_path() / (whole.stem().string() + "." + getExecutable() + whole.extension().string());
}

} // namespace KesProgram::NameOwner
