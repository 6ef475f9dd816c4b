#include <KesDriver/scpi/LineReader.h>

#include <KesDriver/scpi/Block.h>

#include <algorithm>

namespace KesDriver::Scpi {

void LineReader::add(std::string_view bytes)
{
    _bytes += bytes;
    _waiting = false;
}

std::optional<std::string> LineReader::next()
{
    while (!_complete && !_waiting && !_overrun)
        _scan();
    if (!_complete || _overrun)
        return std::nullopt;
    return _take(_position);
}

std::string LineReader::_take(std::size_t end)
{
    std::string message = _bytes.substr(0, end);
    _bytes.erase(0, end + 1);
    if (message.size() > _blockEnd && message.back() == '\r')
        message.pop_back();
    _position = 0;
    _blockEnd = 0;
    _blockBytes = 0;
    _quote = 0;
    _complete = false;
    return message;
}

/// One character or block.
void LineReader::_scan()
{
    if (_position >= _bytes.size()) {
        _waiting = true;
        return;
    }
    const char c = _bytes[_position];
    if (c == '\n') {
        _complete = true;
        return;
    }
    if (c == '#' && _quote == 0 && _position > 0 && canBlockFollow(_bytes[_position - 1]) && _scanBlock())
        return;
    _scanCharacter(c);
    _overrun = _position - _blockBytes > _limits.line;
}

void LineReader::_scanCharacter(char c)
{
    if (_quote != 0)
        _quote = c == _quote ? '\0' : _quote;
    else if (c == '"' || c == '\'')
        _quote = c;
    ++_position;
}

/// False when it is not a block.
bool LineReader::_scanBlock()
{
    BlockHead head;
    switch (scanBlock(std::string_view(_bytes).substr(_position), head)) {
    case BlockScan::None:
        return false;
    case BlockScan::Incomplete:
        _waiting = true;
        return true;
    case BlockScan::Complete:
        break;
    }
    if (head.length > _limits.blocks - _blockBytes) {
        _overrun = true;
    } else if (_bytes.size() - _position < head.headLength + head.length) {
        _waiting = true;
    } else {
        _position += head.headLength + head.length;
        _blockEnd = _position;
        _blockBytes += head.length;
    }
    return true;
}

} // namespace KesDriver::Scpi
