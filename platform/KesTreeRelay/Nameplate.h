#pragma once

#include <KesTree/Node.h>

#include <string>
#include <vector>

/// Who is tested, by whom, and what was remarked: a group "nameplate" of texts in the tree of a test object,
/// all empty at first. No value of it plays a part in a test, and a written tree from before there was a
/// nameplate is complete. GUI thread.
namespace KesTree::Nameplate {

inline constexpr const char* Group = "nameplate";
inline constexpr const char* Place = "nameplate/place";
inline constexpr const char* Bay = "nameplate/bay";
inline constexpr const char* RelayType = "nameplate/relayType";
inline constexpr const char* SerialNumber = "nameplate/serialNumber";
inline constexpr const char* Operator = "nameplate/operator";
inline constexpr const char* Comment = "nameplate/comment";

/// One text that has been filled in. A value.
struct Entry {
    /// The same in all languages, such as "place".
    std::string id;
    std::string name;
    std::string text;
};

/// Adds the group to the tree.
KES_EXPORT void addTo(Node& testObject);

/// What has been filled in, in the language of the process; nothing without such a group.
KES_EXPORT std::vector<Entry> getFilled(const Node& testObject);

/// Takes over the nameplate of another such tree.
KES_EXPORT void copy(const Node& from, Node& to);

} // namespace KesTree::Nameplate
