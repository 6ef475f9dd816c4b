#include <KesProgram/archive/detail/ChunkedBuffer.h>

#include <ostream>

namespace KesProgram {

bool ChunkedBuffer::startsWith(std::string_view text) const
{
    return !_chunks.empty() && std::string_view(_chunks.front()->data(), _filled(0)).starts_with(text);
}

bool ChunkedBuffer::moveTo(std::ostream& out, std::size_t skip)
{
    while (!_chunks.empty() && out) {
        const char* const begin = _chunks.front()->data() + skip;
        out.write(begin, static_cast<std::streamsize>(_filled(0) - skip));
        _chunks.pop_front();
        skip = 0;
    }
    _chunks.clear();
    setp(nullptr, nullptr);
    return !out.fail();
}

ChunkedBuffer::int_type ChunkedBuffer::overflow(int_type character)
{
    _chunks.push_back(std::make_unique_for_overwrite<Chunk>());
    setp(_chunks.back()->data(), _chunks.back()->data() + _chunks.back()->size());
    return traits_type::eq_int_type(character, traits_type::eof())
               ? traits_type::not_eof(character)
               : sputc(traits_type::to_char_type(character));
}

std::size_t ChunkedBuffer::_filled(std::size_t index) const
{
    return index + 1 == _chunks.size() ? static_cast<std::size_t>(pptr() - pbase())
                                       : std::tuple_size_v<Chunk>;
}

} // namespace KesProgram
