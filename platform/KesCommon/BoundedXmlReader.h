#pragma once

#include <KesCommon/Export.h>

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

struct _xmlDict;
struct _xmlDoc;

namespace Kes {

/// Reads XML that comes from a file or from elsewhere outside, as a tree of the XML library.
///
/// Whatever the text, neither time nor memory grow beyond what the limits allow: they are checked while the
/// text is read, before a part of the tree is made of it. A document type is refused in every encoding, so
/// there are no entities but the five that XML defines; nothing but the text is read, no file and no network.
/// One reader per thread at a time.
class KES_EXPORT BoundedXmlReader {
public:
    /// Above everything that the programs write, and small enough for a moment's work.
    struct Limits {
        std::size_t bytes = std::size_t{4} << 20;
        /// Of one tag, comment or instruction, in bytes of UTF-8.
        std::size_t markup = std::size_t{64} << 10;
        /// Elements within each other.
        std::size_t depth = 64;
        /// Of one element, with its namespaces.
        std::size_t attributes = 64;
        /// Declared in the whole document.
        std::size_t namespaces = 64;
        /// Elements, attributes, comments, instructions and sections of characters.
        std::size_t nodes = 100000;
    };

    /// Frees the tree of the XML library.
    struct Deleter {
        void operator()(_xmlDoc* document) const;
    };
    /// `release` it into an `xmlpp::Document` to use it from there.
    using Document = std::unique_ptr<_xmlDoc, Deleter>;

    BoundedXmlReader() : BoundedXmlReader(Limits()) {}
    explicit BoundedXmlReader(const Limits& limits) : _limits(limits) {}

    /// Options of libxml2 beside those that make reading safe.
    void setOptions(int options) { _options = options; }
    /// The document shares its names with a dictionary of the caller, which outlives the reading; null: the
    /// document has its own.
    void setDictionary(_xmlDict* dictionary) { _dictionary = dictionary; }

    /// Null when the text is no well-formed XML or beyond the limits; see `getError` for the reason.
    Document read(std::string_view text);
    /// The same with the contents of a regular file, which are not read beyond the limit. The document bears
    /// the path.
    Document readFile(const std::string& path);

    /// What was wrong the last time, in the words of the XML library or in such words, not for users.
    const std::string& getError() const { return _error; }
    /// Whether that was no fault of the XML but more than this reader takes.
    bool isRefused() const { return _isRefused; }

private:
    Document _read(std::string_view text, const char* path);
    Document _fail(const std::string& error, bool isRefused);

    const Limits _limits;
    int _options = 0;
    _xmlDict* _dictionary = nullptr;
    std::string _error;
    bool _isRefused = false;
};

} // namespace Kes
