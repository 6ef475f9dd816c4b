#pragma once

#include <KesProgram/archive/ArchiveHelper.h>

#include <map>
#include <string>

/// Archives as plain strings, for the tests of the container.
namespace Archives {

using Contents = std::map<std::string, std::string>;

/// Fresh streams for the contents.
KesProgram::ArchiveHelper::DataMap toStreams(const Contents& contents);

/// The archive of the contents behind the current signature; empty when packing fails.
std::string pack(const Contents& contents);

/// What can be unpacked from the bytes; `success` gets the result.
Contents unpack(const std::string& bytes, bool& success);
/// The same for an archive that is expected to be accepted.
Contents unpack(const std::string& bytes);

/// The archive with its four bytes put back, and the other way round.
std::string toZip(const std::string& bytes);
std::string fromZip(const std::string& zip);

/// The archive of one entry with that entry repeated.
std::string repeatEntry(const std::string& bytes, unsigned times);

} // namespace Archives
