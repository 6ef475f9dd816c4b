#pragma once

#include <programs/ReplaceText.h>

#include <KesProgram/archive/ArchiveHelper.h>

#include <gtest/gtest.h>

#include <istream>
#include <iterator>
#include <map>
#include <memory>
#include <sstream>
#include <string>

namespace KesTest {

/// What an archive holds, for a test to change.
using Entries = std::map<std::string, std::string>;

inline std::string textOf(std::istream& stream)
{
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

inline Entries entriesOf(std::istream& archive)
{
    KesProgram::ArchiveHelper::DataMap data;
    EXPECT_TRUE(
        KesProgram::ArchiveHelper::unpackStreamToData(archive, data, KesProgram::ArchiveHelper::PREFIX));
    Entries entries;
    for (const auto& [name, stream] : data)
        entries[name] = textOf(*stream);
    return entries;
}

inline std::stringstream packed(const Entries& entries,
                                const std::string& prefix = KesProgram::ArchiveHelper::PREFIX)
{
    KesProgram::ArchiveHelper::DataMap data;
    for (const auto& [name, text] : entries)
        data[name] = std::make_unique<std::stringstream>(text);
    std::stringstream stream;
    EXPECT_TRUE(KesProgram::ArchiveHelper::packDataToStream(stream, data, prefix));
    return stream;
}

/// With one entry that is changed so.
inline std::stringstream packedWith(Entries entries, const std::string& entry, const std::string& what,
                                    const std::string& with)
{
    replace(entries.at(entry), what, with);
    return packed(entries);
}
/// With one entry that is missing.
inline std::stringstream packedWithout(Entries entries, const std::string& entry)
{
    entries.erase(entry);
    return packed(entries);
}

} // namespace KesTest
