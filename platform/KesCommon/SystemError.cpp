#include <KesCommon/SystemError.h>

#include <KesCommon/CommonText.h>

#include <glib.h>

#include <cerrno>
#include <utility>

namespace Kes {

namespace {

/// Those that a file can meet with.
constexpr std::pair<int, const char*> keys[] = {
    {EACCES, "system.Access"}, {EPERM, "system.Access"},     {EROFS, "system.ReadOnlyDisk"},
    {ENOSPC, "system.Full"},   {EDQUOT, "system.Quota"},     {ENOENT, "system.Missing"},
    {EISDIR, "system.Folder"}, {ENOTDIR, "system.NoFolder"}, {EEXIST, "system.NoFolder"},
    {EIO, "system.Disk"},      {EFBIG, "system.TooLarge"}};

} // namespace

std::string getSystemErrorText(int error)
{
    for (const auto& [number, key] : keys)
        if (number == error)
            return lng::Common::get(key);
    return g_strerror(error);
}

} // namespace Kes
