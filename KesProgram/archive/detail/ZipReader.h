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
/// `ContentBudget` allow. Internal to archives. One thread.
class ZipReader {
public:
    /// The archive, from its fifth byte on, lies in `in` from offset `begin` to offset `end`. The stream must
    /// live as long as the reader, which moves it about and leaves it at its end.
    ZipReader(std::istream& in, std::streamoff begin, std::streamoff end);
    ~ZipReader();

    bool isOpen() const { return _isOpen; }

    /// The name of the next entry; nothing at the end of the archive, at damage and over the limit.
    std::optional<std::string> next();

    /// The content of that entry, as far as it can be read; nothing over the limit.
    std::optional<std::string> readContent();

    /// The archive holds more than it may.
    bool isOverLimit() const { return _budget.isExceeded(); }

private:
    class Source;
    struct Deleter {
        void operator()(archive* reader) const;
    };

    std::size_t _expectedSize() const;

    std::istream& _in;
    std::unique_ptr<Source> _source;
    std::unique_ptr<archive, Deleter> _reader;
    archive_entry* _entry = nullptr;
    bool _isOpen = false;
    ContentBudget _budget;
};

} // namespace KesProgram
