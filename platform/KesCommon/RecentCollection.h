#pragma once

#include <KesCommon/Export.h>

#include <sigc++/sigc++.h>

#include <string>
#include <vector>

namespace Kes {

/// The paths used last, oldest first, newest last, each once. GUI thread.
class KES_EXPORT RecentCollection {
public:
    /// Keeps at most `capacity` paths; with 0 it takes none in.
    explicit RecentCollection(unsigned int capacity);
    RecentCollection(const RecentCollection&) = delete;
    RecentCollection& operator=(const RecentCollection&) = delete;
    virtual ~RecentCollection();

protected:
    /// Whether the collection may take in the path; consulted for each one, added or read back.
    virtual bool _canAdd(const std::string& path);

public:
    /// The list has changed; never emitted for an operation that left it as it was.
    sigc::signal<void()> signalChanged;

    /// Makes the path the newest one. A path already present moves; beyond the capacity the oldest one
    /// leaves. False, and nothing changes, for an empty path and for one that `_canAdd` refuses.
    bool tryAdd(const std::string& path);

    const std::vector<std::string>& getCollection() const { return _paths; }

    /// The newest path; empty when there is none.
    std::string getLast() const;

    unsigned int getCapacity() const { return _capacity; }

    /// The paths as text, oldest first, one per line. Every byte but the plain ASCII ones is escaped as
    /// "%" and two hexadecimal digits, so any path survives any encoding and XML.
    std::string serialize() const;

    /// Takes over the paths of such a text in place of the present ones, by the rules of `tryAdd`.
    /// Blanks around a line and lines that are not properly escaped are passed over.
    void deserialize(const std::string& text);

private:
    bool _put(std::vector<std::string>& paths, const std::string& path);
    void _replace(std::vector<std::string> paths);

    const unsigned int _capacity;
    std::vector<std::string> _paths;
};

} // namespace Kes
