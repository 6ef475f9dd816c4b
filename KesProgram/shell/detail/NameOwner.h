#pragma once

#include <string>

/// Keeps programs apart whose models have classes of the same name: the configuration file of that name
/// belongs to the first of them, and `<path>.owner` beside it names that one's executable. Executables of the
/// same file name are the same program, in whichever folders they lie: an installed one and one that has just
/// been built have their settings and their lost work in common. Any thread.
namespace KesProgram::NameOwner {

/// The file name of this program's executable, as it was when it was first asked for.
const std::string& getExecutable();

/// Takes a name that nobody has. The folder must exist; without one the name stays nobody's.
void claim(const std::string& path);

/// The path itself for its owner, and while it has none; for others with the name of their executable before
/// the extension: "Model.kes-pulse.cfg".
std::string distinguish(const std::string& path);

} // namespace KesProgram::NameOwner
