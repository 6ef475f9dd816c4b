#pragma once

#include <KesCommon/Export.h>

#include <string>

/// Where the family of programs keeps its files. Every path is absolute and ends with "/"; no folder is
/// created here. The environment is read at each call. Any thread, as long as none changes the environment.
namespace Kes {

/// What can be lost without harm: "$XDG_CACHE_HOME/kes/", by default "~/.cache/kes/".
KES_EXPORT std::string getKesCrossAppCacheDir();

/// Settings: "$XDG_CONFIG_HOME/kes/", by default "~/.config/kes/".
KES_EXPORT std::string getKesCrossAppConfigDir();

/// What outlives a process, as recovery copies do: "$XDG_STATE_HOME/kes/" or "~/.local/state/kes/".
KES_EXPORT std::string getKesCrossAppStateDir();

/// Reports: "kes/" in $XDG_DOCUMENTS_DIR or the desktop's documents folder, by default "~/Documents".
KES_EXPORT std::string getKesCrossDocDir();

KES_EXPORT std::string getKesCrossExeDir();

/// Data that comes with the programs, such as "themes/style.css": the first hit in $KES_DATA_DIR (if
/// absolute), the data folder of the library's own tree, "../share/kesprogram/" from the executable, and
/// "kesprogram/" in $XDG_DATA_HOME and each of $XDG_DATA_DIRS. Without any, the path in the library's tree.
KES_EXPORT std::string findDataFile(const std::string& name);

KES_EXPORT std::string getThemesDir();

} // namespace Kes
