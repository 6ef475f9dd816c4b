#include <KesCommon/Directories.h>

#include <KesCommon/detail/OwnLibrary.h>

#include <cstdlib>
#include <filesystem>
#include <glib.h>
#include <glibmm/miscutils.h>
#include <sstream>
#include <vector>

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

constexpr std::size_t ownFolder = 1; // the library's own among those below

/// Where data that comes with the programs may lie, in the order in which it is looked for.
std::vector<std::string> getDataFolders()
{
    const auto relativeTo = [](const std::filesystem::path& folder, const char* data) {
        return closed((folder / data).lexically_normal().string());
    };
    std::vector<std::string> folders{folderFrom("KES_DATA_DIR"),
                                     relativeTo(getOwnLibraryFolder(), KES_DATA_FROM_LIBRARY),
                                     relativeTo(getKesCrossExeDir(), "../share/kesprogram")};
    folders.push_back(userFolder("XDG_DATA_HOME", ".local/share/") + "kesprogram/");
    const char* set = std::getenv("XDG_DATA_DIRS");
    std::istringstream shared(set && *set ? set : "/usr/local/share:/usr/share");
    for (std::string folder; std::getline(shared, folder, ':');)
        if (folder.starts_with('/'))
            folders.push_back(closed(folder) + "kesprogram/");
    return folders;
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

std::string findDataFile(const std::string& name)
{
    const auto folders = getDataFolders();
    for (const auto& folder : folders)
        if (std::error_code error; !folder.empty() && std::filesystem::exists(folder + name, error))
            return folder + name;
    return folders[ownFolder] + name;
}

std::string getThemesDir()
{
    return findDataFile("themes/");
}

} // namespace Kes
