#include <KesMeasure/detail/ResultFormats.h>

#include <KesCommon/NumberText.h>
#include <KesMeasure/ReportXml.h>

#include <glibmm/ustring.h>

#include <algorithm>

namespace KesMeasure::ResultFormats {

namespace {

constexpr const char* digits = "0123456789";

std::string toNumberText(const std::string& cell)
{
    std::string text = toValidText(cell);
    if (text.find_first_of(digits) == std::string::npos)
        return {};
    std::replace(text.begin(), text.end(), ',', '.');
    return text;
}

Field makeField(const std::string& name, const std::string& text, bool isNumber)
{
    return {name, isNumber ? toNumberText(text) : toValidText(text), isNumber};
}

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

std::vector<Field> listBand(const ResultTable::Band& band)
{
    return {makeField("from", band.from, true), makeField("to", band.to, true),
            makeField("bandUnit", band.unit, false)};
}

std::vector<Field> listFields(const ResultTable& table, const ResultTable::Row& row)
{
    std::vector<Field> fields;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const auto& column = table.columns[i];
        const std::string cell = i < row.cells.size() ? row.cells[i] : std::string();
        if (const auto word = row.words.find(column.name); word != row.words.end()) {
            fields.push_back(makeField(column.name, word->second, false));
            continue;
        }
        if (!column.isBand) {
            fields.push_back(makeField(column.name, cell, column.isNumber));
            continue;
        }
        const auto ends = listBand(row.band);
        fields.insert(fields.end(), ends.begin(), ends.end());
    }
    return fields;
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
    add("continuedAt", test.continuedAt);
    add("checksum", summary.checksum);
    return all;
}

} // namespace KesMeasure::ResultFormats
