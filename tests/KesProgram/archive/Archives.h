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

/// What can be unpacked from the bytes; whether they are accepted has to be known.
Contents unpack(const std::string& bytes, bool success = true);

/// What a repair finds in the bytes, which it has to accept.
Contents recover(const std::string& bytes, const KesProgram::ArchiveHelper::ContentLimits& limits = {});

} // namespace Archives
