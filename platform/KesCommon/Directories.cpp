#include <KesCommon/Directories.h>

#include <cstdlib>
#include <filesystem>
#include <glib.h>
#include <glibmm/miscutils.h>

namespace Kes {

namespace {

constexpr const char* family = "kes/";

std::string closed(std::string folder)
{
    if (folder.empty() || folder.back() != '/')
        folder += '/';
    return folder;
}

/// The variable's folder; empty when it is not set or, as XDG asks, when it is not absolute.
std::string folderFrom(const char* variable)
{
    const char* value = std::getenv(variable);
    return value && *value == '/' ? closed(value) : "";
}

std::string home()
{
    const auto folder = folderFrom("HOME");
    return folder.empty() ? closed(g_get_home_dir()) : folder;
}

std::string userFolder(const char* variable, const char* inHome)
{
    const auto folder = folderFrom(variable);
    return folder.empty() ? home() + inHome : folder;
}

} // namespace

std::string getKesCrossAppCacheDir()
{
    return userFolder("XDG_CACHE_HOME", ".cache/") + family;
}

std::string getKesCrossAppConfigDir()
{
    return userFolder("XDG_CONFIG_HOME", ".config/") + family;
}

std::string getKesCrossAppStateDir()
{
    return userFolder("XDG_STATE_HOME", ".local/state/") + family;
}

std::string getKesCrossDocDir()
{
    const auto named = folderFrom("XDG_DOCUMENTS_DIR");
    if (!named.empty())
        return named + family;
    const char* configured = g_get_user_special_dir(G_USER_DIRECTORY_DOCUMENTS);
    return (configured && *configured == '/' ? closed(configured) : home() + "Documents/") + family;
}

std::string getKesCrossExeDir()
{
    std::error_code error;
    const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
    return closed(error ? Glib::get_current_dir() : executable.parent_path().string());
}

std::string getDataDir()
{
    const std::filesystem::path folder = getKesCrossExeDir();
    return closed((folder.parent_path().parent_path() / "share/kesprogram").string());
}

std::string getThemesDir()
{
    return getDataDir() + "themes/";
}

} // namespace Kes
