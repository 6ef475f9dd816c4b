#include <KesDriver/net/FieldText.h>

#include <KesCommon/NumberText.h>
#include <KesCommon/StringHelper.h>

#include <charconv>

namespace KesDriver::FieldText {

namespace {

bool isQuote(char c)
{
    return c == '"' || c == '\'';
}

bool isControl(char c)
{
    return static_cast<unsigned char>(c) < 0x20U || c == '\x7F';
}

} // namespace

std::string quote(std::string_view text)
{
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"')
            quoted += c;
        quoted += isControl(c) ? ' ' : c;
    }
    return quoted += '"';
}

std::optional<std::string> unquote(std::string_view field)
{
    if (field.size() < 2 || !isQuote(field.front()) || field.back() != field.front())
        return std::nullopt;
    const char mark = field.front();
    field = field.substr(1, field.size() - 2);
    std::string text;
    text.reserve(field.size());
    for (std::size_t i = 0; i < field.size(); ++i) {
        if (field[i] == mark && (++i == field.size() || field[i] != mark))
            return std::nullopt;
        text += isControl(field[i]) ? ' ' : field[i];
    }
    return text;
}

std::optional<std::vector<std::string_view>> split(std::string_view text, char separator,
                                                   std::size_t mostParts)
{
    std::vector<std::string_view> parts;
    std::size_t begin = 0;
    char mark = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i < text.size() && mark != 0)
            mark = text[i] == mark ? '\0' : mark;
        else if (i < text.size() && text[i] != separator)
            mark = isQuote(text[i]) ? text[i] : '\0';
        else if (parts.size() == mostParts || mark != 0)
            return std::nullopt;
        else {
            parts.push_back(Kes::StringHelper::trim(text.substr(begin, i - begin)));
            begin = i + 1;
        }
    }
    return parts;
}

std::optional<double> readNumber(std::string_view field)
{
    if (field.find(',') != std::string_view::npos)
        return std::nullopt;
    return Kes::NumberText::read(field);
}

std::optional<std::size_t> readCount(std::string_view field, std::size_t greatest)
{
    std::size_t value = 0;
    const auto* last = field.data() + field.size();
    const auto [end, error] = std::from_chars(field.data(), last, value);
    if (error != std::errc() || end != last || value > greatest)
        return std::nullopt;
    return value;
}

std::optional<bool> readFlag(std::string_view field)
{
    if (field != "0" && field != "1")
        return std::nullopt;
    return field == "1";
}

} // namespace KesDriver::FieldText
