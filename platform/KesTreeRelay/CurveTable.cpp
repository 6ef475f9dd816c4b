#include <KesTreeRelay/CurveTable.h>

#include <KesCommon/NumberText.h>
#include <KesCommon/StringHelper.h>
#include <KesTreeRelay/detail/RelayText.h>

#include <algorithm>
#include <optional>

namespace KesTree::CurveTable {

namespace {

using Kes::StringHelper::format;

constexpr std::size_t mostPairs = 50;

Kes::Result refuse(const char* key, const std::string& pair)
{
    return Kes::Result::failure(format(lng::TreeRelay::get(key), pair));
}

std::vector<std::string> split(const std::string& text)
{
    std::vector<std::string> parts;
    for (std::size_t begin = 0; begin < text.size();) {
        const auto end = std::min(text.find(';', begin), text.size());
        parts.emplace_back(Kes::StringHelper::trim(text.substr(begin, end - begin)));
        begin = end + 1;
    }
    if (!parts.empty() && parts.back().empty())
        parts.pop_back();
    return parts;
}

std::optional<Pair> readPair(const std::string& text)
{
    const auto colon = std::min(text.find(':'), text.size());
    const auto multiple = Kes::NumberText::read(text.substr(0, colon));
    const auto seconds = Kes::NumberText::read(text.substr(std::min(colon + 1, text.size())));
    return multiple && seconds ? std::optional(Pair{*multiple, *seconds}) : std::nullopt;
}

const char* findFault(const Pair& pair, const Pairs& before)
{
    if (!(pair.multiple >= 1.0 && pair.multiple <= 100.0))
        return "Error.tableMultiple";
    if (!(pair.seconds >= 0.001 && pair.seconds <= 3600.0))
        return "Error.tableSeconds";
    if (before.empty())
        return nullptr;
    if (pair.multiple <= before.back().multiple)
        return "Error.tableRising";
    return pair.seconds > before.back().seconds ? "Error.tableFalling" : nullptr;
}

std::string join(const Pairs& pairs, std::string (*number)(double))
{
    std::string text;
    for (const auto& [multiple, seconds] : pairs)
        text += (text.empty() ? "" : "; ") + number(multiple) + ":" + number(seconds);
    return text;
}

} // namespace

Kes::Result read(const std::string& text, Pairs& pairs)
{
    const auto parts = split(text);
    if (parts.size() < 2 || parts.size() > mostPairs)
        return Kes::Result::failure(format(lng::TreeRelay::get("Error.tablePairs"), mostPairs));
    Pairs found;
    for (const auto& part : parts) {
        const auto pair = readPair(part);
        if (!pair)
            return refuse("Error.tablePair", part);
        if (const char* fault = findFault(*pair, found))
            return refuse(fault, part);
        found.push_back(*pair);
    }
    pairs = std::move(found);
    return true;
}

std::string write(const Pairs& pairs)
{
    return join(pairs, Kes::NumberText::write);
}

std::string show(const Pairs& pairs)
{
    return join(pairs, Kes::NumberText::show);
}

} // namespace KesTree::CurveTable
