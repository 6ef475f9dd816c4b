#include <KesDriver/scpi/Text.h>

namespace KesDriver::Scpi {

std::string cut(std::string text, std::size_t length)
{
    if (text.size() <= length)
        return text;
    const auto isContinuation = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
    while (length > 0 && isContinuation(text[length]))
        --length;
    text.resize(length);
    return text;
}

std::string toUpper(std::string_view text)
{
    std::string upper(text);
    for (char& c : upper)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    return upper;
}

std::string_view trimFront(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    return text;
}

std::string_view trim(std::string_view text)
{
    text = trimFront(text);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

Mnemonic::Mnemonic(std::string_view pattern) : longForm(toUpper(pattern))
{
    for (const char c : pattern)
        if (!(c >= 'a' && c <= 'z'))
            shortForm += c;
}

} // namespace KesDriver::Scpi
