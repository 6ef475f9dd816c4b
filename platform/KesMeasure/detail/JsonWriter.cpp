#include <KesMeasure/detail/JsonWriter.h>

#include <KesCommon/NumberText.h>
#include <KesCommon/StringHelper.h>

#include <cmath>

namespace KesMeasure {

namespace {

std::string quoted(std::string_view text)
{
    std::string all = "\"";
    for (const char c : text)
        if (c == '"' || c == '\\')
            all += std::string("\\") + c;
        else if (c >= 0 && c < 0x20)
            all += Kes::StringHelper::format("\\u%04x", static_cast<int>(c));
        else
            all += c;
    return all + '"';
}

} // namespace

void JsonWriter::addText(std::string_view key, const std::string& text)
{
    _add(key, quoted(text));
}

void JsonWriter::addNumber(std::string_view key, double value)
{
    _add(key, std::isfinite(value) ? Kes::NumberText::write(value) : "null");
}

void JsonWriter::_begin(std::string_view key, char bracket)
{
    _add(key, std::string(1, bracket));
    ++_depth;
    _isFirst = true;
}

void JsonWriter::_end(char bracket)
{
    --_depth;
    if (!_isFirst)
        _text += "\n" + std::string(2 * _depth, ' ');
    _text += bracket;
    _isFirst = false;
}

void JsonWriter::_add(std::string_view key, const std::string& value)
{
    if (!_isFirst)
        _text += ",";
    if (_depth > 0)
        _text += "\n" + std::string(2 * _depth, ' ');
    if (!key.empty())
        _text += quoted(key) + ": ";
    _text += value;
    _isFirst = false;
}

} // namespace KesMeasure
