#include <KesMeasure/detail/ResultFormats.h>

#include <KesCommon/NumberText.h>
#include <KesMeasure/ReportXml.h>

#include <glibmm/ustring.h>

#include <algorithm>

namespace KesMeasure::ResultFormats {

namespace {

constexpr const char* digits = "0123456789";

} // namespace

std::string toValidText(const std::string& text)
{
    constexpr gunichar replacement = 0xFFFD;
    Glib::ustring valid;
    for (const gunichar c : Glib::ustring(text).make_valid()) {
        const bool isControl = c < 0x20 && c != '\t' && c != '\n' && c != '\r';
        valid += isControl || c == 0xFFFE || c == 0xFFFF ? replacement : c;
    }
    return valid.raw();
}

std::string toCellText(const ResultTable::Column& column, const std::string& cell)
{
    std::string text = toValidText(cell);
    if (!column.isNumber)
        return text;
    if (text.find_first_of(digits) == std::string::npos)
        return {};
    std::replace(text.begin(), text.end(), ',', '.');
    return text;
}

std::string toValueText(const ResultTable::Value& value)
{
    if (value.number)
        return Kes::NumberText::write(*value.number);
    const bool isMeasured = value.value.find_first_of(digits) != std::string::npos;
    return isMeasured ? toValidText(value.value) : std::string();
}

std::vector<std::pair<std::string, std::string>> listCircumstances(const TestSummary& summary)
{
    std::vector<std::pair<std::string, std::string>> all;
    const auto add = [&all](const char* name, const std::string& text) {
        if (!text.empty())
            all.emplace_back(name, toValidText(text));
    };
    if (!summary.circumstances)
        return all;
    const auto& test = *summary.circumstances;
    add("device", test.device);
    add("serialNumber", test.serialNumber);
    add("firmwareVersion", test.firmwareVersion);
    add("calibrationDate", test.calibrationDate);
    add("origin", ReportXml::wordOf(test.origin));
    add("startedAt", test.startedAt);
    add("checksum", summary.checksum);
    return all;
}

} // namespace KesMeasure::ResultFormats
