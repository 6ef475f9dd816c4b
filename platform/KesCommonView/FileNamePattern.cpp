#include <KesCommonView/FileNamePattern.h>

#include <algorithm>
#include <string_view>

namespace Kes::FileNamePattern {

namespace {

bool isLatin(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isLetter(char c)
{
    return isLatin(c) || static_cast<unsigned char>(c) >= 0x80;
}

/// With its dot; empty when the pattern stands for no single extension.
std::string_view getExtension(std::string_view pattern)
{
    if (!pattern.starts_with("*.") || pattern.size() == 2)
        return {};
    const auto extension = pattern.substr(1);
    return extension.find_first_of("*?[]/;") == std::string_view::npos ? extension : std::string_view();
}

bool hasExtension(std::string_view name)
{
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0)
        return false;
    const auto extension = name.substr(dot + 1);
    return std::any_of(extension.begin(), extension.end(), isLetter) &&
           extension.find(' ') == std::string_view::npos;
}

} // namespace

std::string complete(const std::string& path, const std::string& pattern)
{
    const auto slash = path.rfind('/');
    const auto name = std::string_view(path).substr(slash == std::string::npos ? 0 : slash + 1);
    const auto extension = getExtension(pattern);
    if (name.empty() || name.ends_with(extension) || hasExtension(name))
        return path;
    const auto stem = name.ends_with('.') ? path.substr(0, path.size() - 1) : path;
    return stem + std::string(extension);
}

std::string exchange(const std::string& path, const std::string& from, const std::string& to)
{
    const auto old = getExtension(from);
    if (old.empty() || getExtension(to).empty() || !path.ends_with(old))
        return path;
    return path.substr(0, path.size() - old.size()) + std::string(getExtension(to));
}

std::string ignoreCase(const std::string& pattern)
{
    std::string result;
    for (const char c : pattern) {
        if (isLatin(c))
            result += {'[', static_cast<char>(c | 0x20), static_cast<char>(c & ~0x20), ']'};
        else
            result += c;
    }
    return result;
}

} // namespace Kes::FileNamePattern
