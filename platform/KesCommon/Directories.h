#pragma once

#include <KesCommon/Export.h>

#include <string>

/// Where the family of programs keeps its files. Every path is absolute and ends with "/"; no folder is
/// created here. The environment is read at each call. Any thread, as long as none changes the environment.
namespace Kes {

/// What can be lost without harm, per user: "$XDG_CACHE_HOME/kes/", by default "~/.cache/kes/".
KES_EXPORT std::string getKesCrossAppCacheDir();

/// Settings, per user: "$XDG_CONFIG_HOME/kes/", by default "~/.config/kes/".
KES_EXPORT std::string getKesCrossAppConfigDir();

/// What belongs to one user on one machine and must outlive the process, such as copies of unsaved work:
/// "$XDG_STATE_HOME/kes/", by default "~/.local/state/kes/".
KES_EXPORT std::string getKesCrossAppStateDir();

/// Reports and the like: the folder "kes" in the user's documents folder. That is $XDG_DOCUMENTS_DIR or
/// the one configured for the desktop, by default "~/Documents". A folder of the family's own keeps
/// a "report.html" from replacing a file that the user has made.
KES_EXPORT std::string getKesCrossDocDir();

/// The folder of the running executable.
KES_EXPORT std::string getKesCrossExeDir();

/// A file or folder of the data that comes with the programs, such as "themes/style.css". The first of these
/// folders that has it counts, so that a program finds the family's data wherever it lies itself, and may
/// bring data of its own:
///  - $KES_DATA_DIR, when that is an absolute path,
///  - the folder that belongs to the library's own file, in an installed tree and in the build tree alike,
///  - "../share/kesprogram/" as seen from the executable's folder,
///  - "kesprogram/" in $XDG_DATA_HOME and in each of $XDG_DATA_DIRS.
/// Without any, the path that it would have in the library's folder.
KES_EXPORT std::string findDataFile(const std::string& name);

/// Style sheets, icons and pictures: "themes/" in the data that comes with the programs.
KES_EXPORT std::string getThemesDir();

} // namespace Kes
