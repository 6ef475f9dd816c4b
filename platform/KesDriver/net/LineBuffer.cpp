#include <KesDriver/net/LineBuffer.h>

#include <glib.h>

#include <algorithm>

namespace KesDriver {

namespace {

bool isText(const std::string& line)
{
    const auto isControl = [](char c) {
        return (static_cast<unsigned char>(c) < 0x20U && c != '\t') || c == '\x7F';
    };
    return std::none_of(line.begin(), line.end(), isControl) &&
           g_utf8_validate_len(line.data(), line.size(), nullptr);
}

} // namespace

void LineBuffer::append(std::string_view bytes)
{
    if (_isBroken)
        return;
    _bytes.erase(0, _begin);
    _searched -= _begin;
    _begin = 0;
    _bytes += bytes;
}

bool LineBuffer::take(std::string& line)
{
    if (_isBroken)
        return false;
    const auto end = _bytes.find('\n', _searched);
    _searched = end == std::string::npos ? _bytes.size() : end + 1;
    const auto length = (end == std::string::npos ? _bytes.size() : end) - _begin;
    if (length > _longestLine + 1) {
        _isBroken = true;
        return false;
    }
    if (end == std::string::npos)
        return false;
    line.assign(_bytes, _begin, length);
    if (line.ends_with('\r'))
        line.pop_back();
    _begin = end + 1;
    _isBroken = line.size() > _longestLine || !isText(line);
    return !_isBroken;
}

} // namespace KesDriver
