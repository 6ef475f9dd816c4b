#pragma once

#include <KesProgram/archive/ContentBudget.h>

#include <istream>
#include <memory>
#include <optional>
#include <string>

struct archive;
struct archive_entry;

namespace KesProgram {

/// Reads a ZIP archive whose first four bytes are missing, straight from a stream. Takes whatever bytes come:
/// damage ends the reading, and neither memory nor time grow beyond what the size of the stream and
/// `ContentBudget` allow. Entries that are neither stored nor deflated count as damaged: other methods may
/// ask for gigabytes of working memory. Internal to archives. One thread.
class ZipReader {
public:
    /// How the entries are found.
    enum class Search {
        Directory, ///< by the directory at the end; by their headers when there is none
        Headers    ///< one after the other by their own headers
    };

    /// The archive, from its fifth byte on, lies in `in` from offset `begin` to offset `end`. The stream and
    /// the budget must live as long as the reader, which moves the stream about and leaves it at its end.
    ZipReader(std::istream& in, std::streamoff begin, std::streamoff end, ContentBudget& budget,
              Search search);
    ~ZipReader();

    bool isOpen() const { return _isOpen; }

    /// The name of the next entry; nothing at the end of the archive, at damage and over the limit.
    std::optional<std::string> next();

    /// The content of that entry, as far as it can be read; nothing over the limit.
    std::optional<std::string> readContent();

    /// Whether the content read last is all of its entry, with the right checksum.
    bool isContentWhole() const { return _isContentWhole; }

private:
    class Source;
    struct Deleter {
        void operator()(archive* reader) const;
    };

    bool _isReadable() const;
    std::size_t _expectedSize() const;

    std::istream& _in;
    ContentBudget& _budget;
    std::unique_ptr<Source> _source;
    std::unique_ptr<archive, Deleter> _reader;
    archive_entry* _entry = nullptr;
    bool _isOpen = false;
    bool _isContentWhole = false;
};

} // namespace KesProgram
