#include <KesProgram/archive/detail/ZipReader.h>

#include <KesProgram/archive/detail/NameLocale.h>
#include <KesProgram/archive/detail/ZipWriter.h>

#include <archive.h>
#include <archive_entry.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <string_view>
#include <utility>

namespace KesProgram {

namespace {

// Also the unit in which the rest of a damaged entry is lost.
constexpr std::size_t blockSize = 8192;

// Sizes beyond it are as good as endless; it keeps their multiples countable.
constexpr std::int64_t largestSize = std::int64_t{1} << 48;

} // namespace

/// The archive with its first bytes put back, as libarchive's callbacks want it. Nothing is thrown through
/// libarchive: an exception of the stream's buffer is a read error.
class ZipReader::Source {
public:
    Source(std::streambuf& in, std::streamoff begin, std::streamoff end)
        : _in(in),
          _begin(begin),
          _size(std::min<std::int64_t>(end - begin, largestSize) + missing),
          _toRead(16 * _size + (1 << 20))
    {}

    std::int64_t getSize() const { return _size; }

    bool open(archive* reader)
    {
        archive_read_set_callback_data(reader, this);
        archive_read_set_read_callback(reader, [](archive*, void* source, const void** block) {
            return static_cast<Source*>(source)->_read(block);
        });
        archive_read_set_skip_callback(reader, [](archive*, void* source, la_int64_t count) {
            return static_cast<Source*>(source)->_skip(count);
        });
        archive_read_set_seek_callback(reader, [](archive*, void* source, la_int64_t offset, int whence) {
            return static_cast<Source*>(source)->_seek(offset, whence);
        });
        return archive_read_open1(reader) == ARCHIVE_OK;
    }

private:
    la_ssize_t _read(const void** block)
    {
        *block = _block.data();
        const auto wanted =
            std::min<std::int64_t>(static_cast<std::int64_t>(_block.size()), _size - _position);
        // Entries that overlap could have the same bytes unpacked again and again.
        _toRead -= wanted;
        if (_toRead < 0)
            return ARCHIVE_FATAL;
        try {
            const auto count = _fill(wanted);
            // Nothing of the stream's is left for the library to find; see NameLocale.
            errno = 0;
            _position += count;
            return count;
        } catch (...) {
            return ARCHIVE_FATAL;
        }
    }

    std::int64_t _fill(std::int64_t wanted)
    {
        std::int64_t count = 0;
        for (; count < wanted && _position + count < missing; ++count)
            _block[static_cast<std::size_t>(count)] =
                zipSignature[static_cast<std::size_t>(_position + count)];
        if (count == wanted)
            return count;
        const std::streamoff offset = _begin + _position + count - missing;
        if (offset != _offset && _in.pubseekpos(offset, std::ios::in) != std::streampos(offset))
            return count;
        const auto got = _in.sgetn(_block.data() + count, wanted - count);
        _offset = offset + got;
        return count + got;
    }

    la_int64_t _skip(la_int64_t count)
    {
        const auto skipped = std::clamp<la_int64_t>(count, 0, _size - _position);
        _position += skipped;
        return skipped;
    }

    la_int64_t _seek(la_int64_t offset, int whence)
    {
        const auto base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? _position : _size;
        if (offset < -base || offset > _size - base)
            return ARCHIVE_FATAL;
        return _position = base + offset;
    }

    static constexpr std::int64_t missing = zipSignature.size();

    std::streambuf& _in;
    const std::streamoff _begin;
    const std::int64_t _size;
    std::int64_t _toRead;
    std::int64_t _position = 0;
    std::streamoff _offset = -1;
    std::array<char, 65536> _block;
};

ZipReader::ZipReader(std::istream& in, std::streamoff begin, std::streamoff end, ContentBudget& budget,
                     Search search)
    : _in(in),
      _budget(budget),
      _source(std::make_unique<Source>(*in.rdbuf(), begin, end)),
      _reader(archive_read_new())
{
    if (!_reader)
        return;
    const NameLocale locale(NameLocale::Encoding::Utf8);
    // No other format: one can only be made to begin like a ZIP by somebody who wants to reach its reader,
    // and the memory of those has no bounds.
    if (search == Search::Directory)
        archive_read_support_format_zip(_reader.get());
    else
        archive_read_support_format_zip_streamable(_reader.get());
    _isOpen = _source->open(_reader.get());
}

ZipReader::~ZipReader()
{
    _reader.reset();
    _in.clear();
    _in.seekg(0, std::ios::end);
}

void ZipReader::Deleter::operator()(archive* reader) const
{
    archive_read_free(reader);
}

std::optional<std::string> ZipReader::next()
{
    const NameLocale locale(NameLocale::Encoding::Utf8);
    if (archive_read_next_header(_reader.get(), &_entry) != ARCHIVE_OK)
        return std::nullopt;
    // Reading the header may have left an error behind that is over; see NameLocale.
    errno = 0;
    const char* const name = archive_entry_pathname(_entry);
    if (!name)
        return std::nullopt;
    std::optional<std::string> result(name);
    if (!_budget.takeEntry(*result))
        return std::nullopt;
    return result;
}

std::optional<std::string> ZipReader::readContent()
{
    const NameLocale locale(NameLocale::Encoding::Utf8);
    std::string content;
    _isContentWhole = false;
    if (!_isReadable())
        return content;
    content.reserve(_expectedSize());
    for (;;) {
        const auto used = content.size();
        content.resize(used + blockSize);
        const auto count = archive_read_data(_reader.get(), content.data() + used, blockSize);
        content.resize(used + static_cast<std::size_t>(std::max<la_ssize_t>(count, 0)));
        _isContentWhole = count == 0;
        if (count <= 0)
            break;
        if (!_budget.take(static_cast<std::uint64_t>(count)))
            return std::nullopt;
    }
    if (content.capacity() / 2 > content.size())
        content.shrink_to_fit();
    return content;
}

// The library gives the method of an entry in the name of the format only.
bool ZipReader::_isReadable() const
{
    const char* const format = archive_format_name(_reader.get());
    const std::string_view method = format ? format : "";
    return method.ends_with("(uncompressed)") || method.ends_with("(deflation)");
}

// The directory's word for the size saves moving the content while it grows. It may be a lie: deflate
// packs at best to a thousandth.
std::size_t ZipReader::_expectedSize() const
{
    if (!archive_entry_size_is_set(_entry))
        return blockSize;
    const std::int64_t claimed = archive_entry_size(_entry);
    const auto possible = std::min(1100 * _source->getSize(), static_cast<std::int64_t>(_budget.getLeft()));
    return static_cast<std::size_t>(std::clamp<std::int64_t>(claimed, 0, possible)) + blockSize;
}

} // namespace KesProgram
