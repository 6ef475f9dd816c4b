#include <KesCommon/FileSystem.h>

#include <KesCommon/CommonText.h>
#include <KesCommon/FileStream.h>
#include <KesCommon/StringHelper.h>
#include <KesCommon/SystemError.h>

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <glib.h>
#include <glib/gstdio.h>
#include <iterator>
#include <sys/stat.h>
#include <unistd.h>

namespace Kes {

namespace {

constexpr mode_t newFileMode = 0666;

/// `reason`: an `errno`.
Result writeError(const std::string& path, int reason)
{
    return Result::failure(StringHelper::format(lng::Common::get("error.FileWrite"),
                                                getSystemErrorText(reason ? reason : EIO), path));
}

/// The name at the end of a link, where a new file takes the old one's place; also when nothing is there yet.
std::string followLinks(std::filesystem::path path)
{
    constexpr int longestChain = 40;
    std::error_code error;
    for (int i = 0; i < longestChain && std::filesystem::is_symlink(path, error); ++i)
        path = path.parent_path() / std::filesystem::read_symlink(path, error);
    return path.string();
}

/// Opened at this end as long as it lives. Without a reader at the other end that fails; a stream would wait.
class PipeEnd {
public:
    explicit PipeEnd(const std::string& path)
        : _descriptor(::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC))
    {}
    ~PipeEnd()
    {
        if (isOpen())
            ::close(_descriptor);
    }
    PipeEnd(const PipeEnd&) = delete;
    PipeEnd& operator=(const PipeEnd&) = delete;

    bool isOpen() const { return _descriptor >= 0; }

private:
    const int _descriptor;
};

Result writeInPlace(const std::string& path, std::string_view contents)
{
    const PipeEnd pipe(path);
    if (!pipe.isOpen())
        return writeError(path, errno);
    std::ofstream stream(path, std::ios::out | std::ios::binary);
    stream.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    stream.close();
    return stream ? Result(true) : writeError(path, errno);
}

} // namespace

bool mkdir_with_parents(const std::string& path)
{
    return !path.empty() && g_mkdir_with_parents(path.c_str(), 0777) == 0;
}

bool fileExist(const std::string& path)
{
    struct stat status;
    return ::stat(path.c_str(), &status) == 0;
}

std::string readWholeFile(const std::string& path)
{
    auto stream = openInputFileUTF8Name(path, std::ios::in | std::ios::binary);
    try {
        return {std::istreambuf_iterator<char>(stream), {}};
    } catch (const std::ios_base::failure&) {
        return {};
    }
}

Result writeWholeFile(const std::string& path, std::string_view contents)
{
    if (path.empty())
        return writeError(path, ENOENT);
    struct stat status;
    const bool exists = ::stat(path.c_str(), &status) == 0;
    if (exists && !S_ISREG(status.st_mode))
        return writeInPlace(path, contents);
    const auto name = followLinks(path);
    errno = 0;
    // Its own message names the temporary file, of which the user knows nothing.
    if (!g_file_set_contents_full(name.c_str(), contents.data(), static_cast<gssize>(contents.size()),
                                  G_FILE_SET_CONTENTS_CONSISTENT, static_cast<int>(newFileMode), nullptr))
        return writeError(path, errno);
    if (exists)
        g_chmod(name.c_str(), static_cast<int>(status.st_mode & 07777U));
    return true;
}

} // namespace Kes
