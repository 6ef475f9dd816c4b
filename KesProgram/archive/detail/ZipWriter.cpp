#include <KesProgram/archive/detail/ZipWriter.h>

#include <KesProgram/archive/detail/NameLocale.h>

#include <archive.h>
#include <archive_entry.h>
#include <glib.h>

#include <algorithm>
#include <ostream>

namespace KesProgram {

namespace {

using EntryPointer = std::unique_ptr<archive_entry, decltype(&archive_entry_free)>;

// A reader composes the characters of names marked as UTF-8 and stops at a malformed one. Names that would
// not come back as they are get no mark.
NameLocale::Encoding encodingOf(const std::string& name)
{
    if (std::all_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
        return NameLocale::Encoding::Utf8;
    const auto size = static_cast<gssize>(name.size());
    if (!g_utf8_validate(name.data(), size, nullptr))
        return NameLocale::Encoding::Bytes;
    const std::unique_ptr<char, decltype(&g_free)> composed(
        g_utf8_normalize(name.data(), size, G_NORMALIZE_NFC), &g_free);
    return composed && name == composed.get() ? NameLocale::Encoding::Utf8 : NameLocale::Encoding::Bytes;
}

} // namespace

ZipWriter::ZipWriter(std::ostream& zip, const ArchiveHelper::ContentLimits& limits)
    : _writer(archive_write_new()), _isOpen(false), _budget(limits)
{
    if (!_writer)
        return;
    archive_write_set_format_zip(_writer.get());
    archive_write_zip_set_compression_deflate(_writer.get());
    // Not every version of libarchive knows the option; the archive is the same without it.
    archive_write_set_options(_writer.get(), "zip:compat=0");
    _isOpen = archive_write_open(_writer.get(), &zip, nullptr, &ArchiveHelper::ostream_write_callback,
                                 &ArchiveHelper::ostream_close_callback) == ARCHIVE_OK;
}

ZipWriter::~ZipWriter() = default;

void ZipWriter::Deleter::operator()(archive* writer) const
{
    archive_write_free(writer);
}

// The length field of a name has 16 bits, and libarchive overruns a buffer with a longer name. A NUL would
// cut the name and could make two entries one. A name that ends like a folder's reads back without content.
bool ZipWriter::canStore(const std::string& name)
{
    return !name.empty() && name.size() <= 65535 && name.find('\0') == std::string::npos &&
           name.back() != '/' && name.back() != '\\';
}

bool ZipWriter::add(const std::string& name, std::istream& content)
{
    return canStore(name) && _budget.takeEntry(name) && _writeHeader(name) && _writeContent(content);
}

bool ZipWriter::finish()
{
    return archive_write_close(_writer.get()) == ARCHIVE_OK;
}

bool ZipWriter::_writeHeader(const std::string& name)
{
    const NameLocale locale(encodingOf(name));
    const EntryPointer entry(archive_entry_new(), &archive_entry_free);
    if (!entry)
        return false;
    archive_entry_set_pathname(entry.get(), name.c_str());
    archive_entry_set_filetype(entry.get(), AE_IFREG);
    archive_entry_set_perm(entry.get(), 0644);
    return archive_write_header(_writer.get(), entry.get()) == ARCHIVE_OK;
}

bool ZipWriter::_writeContent(std::istream& content)
{
    while (content.good()) {
        content.read(_block.data(), static_cast<std::streamsize>(_block.size()));
        const auto count = static_cast<std::size_t>(content.gcount());
        if (count == 0)
            continue;
        if (!_budget.take(count) ||
            archive_write_data(_writer.get(), _block.data(), count) != static_cast<la_ssize_t>(count))
            return false;
    }
    return true;
}

} // namespace KesProgram
