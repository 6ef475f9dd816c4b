#pragma once

#include <string>

/// Keeps programs apart whose models have classes of the same name: the configuration file of that name
/// belongs to the first of them, and `<path>.owner` beside it names that one's executable. Any thread.
namespace KesProgram::NameOwner {

/// Takes a name that nobody has. The folder must exist; without one the name stays nobody's.
void claim(const std::string& path);

/// What a program that is not the owner of the path adds to a name: "." and the name of its executable. Empty
/// for the owner, and while the path has none.
std::string getDistinction(const std::string& path);

/// The path with the distinction before its extension: "Model.kes-pulse.cfg".
std::string distinguish(const std::string& path);

} // namespace KesProgram::NameOwner
