#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Language.h>

#include <string>

/// The shell's texts by key, for menus, tooltips, captions and short messages.
///
/// Keys are ASCII, "Group.name", with the groups Message, Menu, Tool, Help, Status and Error; they match
/// whole and with their case. "Tool." texts are a title line and a description line. Texts with "%s" are
/// formats for `Kes::StringHelper::format`. Any thread.
namespace lng::Program {

/// The text for `key` in the language of the process, valid for the life of the process.
/// For an unknown key it is `key.c_str()`, so that a missing text shows as its key; that pointer lives as
/// long as the caller's string, so copy the result at once.
KES_EXPORT const char* get(const std::string& key);

} // namespace lng::Program

namespace lng {

/// The tag of the language of the process, as in the folder of the help files. Any thread.
inline const char* languageName()
{
    return languageTag();
}

} // namespace lng
