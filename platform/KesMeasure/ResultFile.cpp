#include <KesMeasure/ResultFile.h>

#include <KesCommon/FileSystem.h>
#include <KesCommon/StringHelper.h>
#include <KesMeasure/MeasureText.h>
#include <KesMeasure/detail/ResultFormats.h>

#include <algorithm>
#include <utility>

namespace KesMeasure::ResultFile {

std::optional<Kind> findKind(const std::string& path)
{
    static constexpr std::pair<const char*, Kind> endings[] = {
        {".csv", Kind::Csv}, {".json", Kind::Json}, {".xml", Kind::JUnit}};
    std::string name = path.substr(path.rfind('/') + 1);
    std::transform(name.begin(), name.end(), name.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    for (const auto& [ending, kind] : endings)
        if (Kes::StringHelper::endsWith(name, ending))
            return kind;
    return std::nullopt;
}

Kes::Result check(const std::string& path)
{
    if (findKind(path))
        return true;
    return Kes::Result::failure(Kes::StringHelper::format(lng::Measure::get("Results.fileKind"), path));
}

std::string toText(Kind kind, const TestSummary& summary)
{
    switch (kind) {
    case Kind::Csv:
        return ResultFormats::toCsv(summary);
    case Kind::Json:
        return ResultFormats::toJson(summary);
    case Kind::JUnit:
        break;
    }
    return ResultFormats::toJUnit(summary);
}

Kes::Result write(const std::string& path, const TestSummary& summary)
{
    const auto kind = findKind(path);
    return kind ? Kes::writeWholeFile(path, toText(*kind, summary)) : check(path);
}

} // namespace KesMeasure::ResultFile
