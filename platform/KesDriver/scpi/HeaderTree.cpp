#include <KesDriver/scpi/HeaderTree.h>

#include <KesDriver/scpi/Error.h>
#include <KesDriver/scpi/Text.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <stdexcept>

namespace KesDriver::Scpi {

namespace {

constexpr std::string_view suffixMark = "<n>";

/// What a header ends with: its number, and which of its nodes take a suffix.
struct Leaf {
    std::size_t number;
    std::vector<bool> takesSuffix;
};

/// The pattern without its brackets, with and without what stands in them.
std::vector<std::string> expand(const std::string& pattern)
{
    const auto open = pattern.find('[');
    const auto close = pattern.find(']', open);
    if (open == pattern.npos || close == pattern.npos)
        return {pattern};
    const auto before = pattern.substr(0, open);
    auto paths = expand(before + pattern.substr(open + 1, close - open - 1) + pattern.substr(close + 1));
    const auto without = expand(before + pattern.substr(close + 1));
    paths.insert(paths.end(), without.begin(), without.end());
    return paths;
}

std::vector<std::string_view> split(std::string_view path)
{
    std::vector<std::string_view> nodes;
    for (std::size_t begin = 0; begin <= path.size();) {
        const auto end = std::min(path.find(':', begin), path.size());
        nodes.push_back(path.substr(begin, end - begin));
        begin = end + 1;
    }
    return nodes;
}

struct Given {
    std::string_view name;
    /// None when there are no digits.
    std::optional<unsigned> suffix;
};

Given splitSuffix(std::string_view node)
{
    const auto last = node.find_last_not_of("0123456789");
    const auto name = node.substr(0, last + 1);
    const auto digits = node.substr(last + 1);
    if (digits.empty())
        return {name, std::nullopt};
    unsigned suffix = 0;
    if (std::from_chars(digits.data(), digits.data() + digits.size(), suffix).ec != std::errc())
        throw Error(ErrorCode::HeaderSuffixOutOfRange, std::string(node));
    return {name, suffix};
}

} // namespace

struct HeaderTree::Node {
    explicit Node(std::string_view pattern) : mnemonic(pattern) {}

    Node* find(std::string_view upper) const
    {
        const auto found = std::find_if(children.begin(), children.end(),
                                        [&](const auto& child) { return child->mnemonic.matches(upper); });
        return found == children.end() ? nullptr : found->get();
    }
    Node& get(std::string_view pattern)
    {
        if (auto* const child = find(toUpper(pattern)))
            return *child;
        return *children.emplace_back(std::make_unique<Node>(pattern));
    }

    Mnemonic mnemonic;
    std::vector<std::unique_ptr<Node>> children;
    std::optional<Leaf> command;
    std::optional<Leaf> query;
};

HeaderTree::HeaderTree() : _root(std::make_unique<Node>("")) {}
HeaderTree::~HeaderTree() = default;
HeaderTree::HeaderTree(HeaderTree&&) noexcept = default;

void HeaderTree::add(std::string_view pattern, std::size_t number)
{
    const bool isQuery = pattern.ends_with('?');
    if (isQuery)
        pattern.remove_suffix(1);
    for (const auto& path : expand(std::string(pattern)))
        _addPath(path.starts_with(':') ? std::string_view(path).substr(1) : path, isQuery, number);
}

void HeaderTree::_addPath(std::string_view path, bool isQuery, std::size_t number)
{
    Leaf leaf{number, {}};
    auto* node = _root.get();
    for (auto part : split(path)) {
        const bool takesSuffix = part.ends_with(suffixMark);
        if (takesSuffix)
            part.remove_suffix(suffixMark.size());
        leaf.takesSuffix.push_back(takesSuffix);
        node = &node->get(part);
    }
    auto& place = isQuery ? node->query : node->command;
    if (place)
        throw std::invalid_argument("a header is given twice: " + std::string(path));
    place = std::move(leaf);
}

HeaderTree::Match HeaderTree::find(std::string_view header, bool isQuery) const
{
    std::vector<std::optional<unsigned>> suffixes;
    const auto* node = _root.get();
    for (const auto part : split(header)) {
        const auto [name, suffix] = splitSuffix(part);
        suffixes.push_back(suffix);
        node = node->find(name);
        if (!node)
            throw Error(ErrorCode::UndefinedHeader, std::string(header));
    }
    const auto& leaf = isQuery ? node->query : node->command;
    if (!leaf)
        throw Error(ErrorCode::UndefinedHeader, std::string(header) + (isQuery ? "?" : ""));
    Match match{leaf->number, {}};
    for (std::size_t i = 0; i < suffixes.size(); ++i) {
        if (leaf->takesSuffix[i])
            match.suffixes.push_back(suffixes[i].value_or(1));
        else if (suffixes[i])
            throw Error(ErrorCode::HeaderSuffixOutOfRange, std::string(header));
    }
    return match;
}

} // namespace KesDriver::Scpi
