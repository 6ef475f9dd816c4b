#pragma once

#include <KesProgram/archive/ContentBudget.h>

#include <array>
#include <iosfwd>
#include <istream>
#include <memory>
#include <string>
#include <string_view>

struct archive;

namespace KesProgram {

/// What every ZIP archive with at least one entry begins with.
inline constexpr std::string_view zipSignature{"PK\3\4", 4};

/// Writes a ZIP archive of regular files, the same bytes for the same entries at any time and in any locale.
/// Internal to archives. One thread.
class ZipWriter {
public:
    /// Writes to `zip`, which must live as long as the writer.
    ZipWriter(std::ostream& zip, const ArchiveHelper::ContentLimits& limits);
    ~ZipWriter();

    /// Whether an entry of this name comes back as it is.
    static bool canStore(const std::string& name);

    bool isOpen() const { return _isOpen; }

    /// Adds an entry with what is left to read in `content`. False for a name that cannot be stored, too
    /// much data or an error; the archive is useless then.
    bool add(const std::string& name, std::istream& content);

    /// Writes the directory. Nothing can be added afterwards.
    bool finish();

private:
    bool _writeHeader(const std::string& name);
    bool _writeContent(std::istream& content);

    struct Deleter {
        void operator()(archive* writer) const;
    };
    std::unique_ptr<archive, Deleter> _writer;
    bool _isOpen;
    ContentBudget _budget;
    std::array<char, 8192> _block{};
};

} // namespace KesProgram
