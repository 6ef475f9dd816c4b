#pragma once

#include <Overcurrent/data/OvercurrentArchive.h>

#include <istream>
#include <map>
#include <sstream>
#include <string>

/// An archive of the program Overcurrent with a value of each kind, and its parts for a test to change.
namespace OvercurrentArchives {

using Entries = std::map<std::string, std::string>;

Overcurrent::TestResults someResults();
/// Of other settings and another plan than the results.
Overcurrent::OvercurrentArchive someArchive();

std::string textOf(std::istream& stream);
Entries entriesOf(std::istream& stream);
Entries entriesOf(const Overcurrent::OvercurrentArchive& archive);
std::stringstream packed(const Entries& entries, const std::string& prefix);
/// The first one; a failure when there is none.
void replace(std::string& text, const std::string& what, const std::string& with);

} // namespace OvercurrentArchives
