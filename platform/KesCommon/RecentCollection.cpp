#include <KesCommon/RecentCollection.h>

#include <KesCommon/StringHelper.h>

#include <optional>
#include <sstream>
#include <string_view>
#include <utility>

namespace Kes {

namespace {

constexpr const char* digits = "0123456789ABCDEF";

bool isPlain(char c)
{
    return c > ' ' && c < 0x7F && c != '%' && c != '<' && c != '>' && c != '&' && c != '"' && c != '\'';
}

std::string escape(const std::string& path)
{
    std::string text;
    for (const char c : path) {
        if (isPlain(c)) {
            text += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        text += '%';
        text += digits[byte / 16];
        text += digits[byte % 16];
    }
    return text;
}

int digitValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

std::optional<std::string> unescape(std::string_view text)
{
    // No path holds a zero, escaped or not.
    if (text.find('\0') != std::string_view::npos)
        return std::nullopt;
    std::string path;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            path += text[i];
            continue;
        }
        const int high = i + 2 < text.size() ? digitValue(text[i + 1]) : -1;
        const int low = high >= 0 ? digitValue(text[i + 2]) : -1;
        if (low < 0 || (high == 0 && low == 0))
            return std::nullopt;
        path += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return path;
}

} // namespace

RecentCollection::RecentCollection(unsigned int capacity) : _capacity(capacity) {}

RecentCollection::~RecentCollection() = default;

bool RecentCollection::_canAdd(const std::string&)
{
    return true;
}

bool RecentCollection::tryAdd(const std::string& path)
{
    auto paths = _paths;
    if (!_put(paths, path))
        return false;
    _replace(std::move(paths));
    return true;
}

std::string RecentCollection::getLast() const
{
    return _paths.empty() ? "" : _paths.back();
}

std::string RecentCollection::serialize() const
{
    std::string text;
    for (const auto& path : _paths) {
        if (!text.empty())
            text += '\n';
        text += escape(path);
    }
    return text;
}

void RecentCollection::deserialize(const std::string& text)
{
    std::vector<std::string> paths;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        if (const auto path = unescape(StringHelper::trim(line)))
            _put(paths, *path);
    _replace(std::move(paths));
}

bool RecentCollection::_put(std::vector<std::string>& paths, const std::string& path)
{
    if (path.empty() || _capacity == 0 || !_canAdd(path))
        return false;
    std::erase(paths, path);
    paths.push_back(path);
    if (paths.size() > _capacity)
        paths.erase(paths.begin());
    return true;
}

void RecentCollection::_replace(std::vector<std::string> paths)
{
    if (paths == _paths)
        return;
    _paths = std::move(paths);
    signalChanged.emit();
}

} // namespace Kes
