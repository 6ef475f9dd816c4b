#pragma once

#include <KesMeasure/ResultFile.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

/// The forms of `ResultFile`, and what they share. Any thread.
namespace KesMeasure::ResultFormats {

std::string toCsv(const TestSummary& summary);
std::string toJson(const TestSummary& summary);
std::string toJUnit(const TestSummary& summary);

/// Valid UTF-8 without what XML cannot hold; line ends and tabs stay.
std::string toValidText(const std::string& text);

/// What a row holds under a name.
struct Field {
    std::string name;
    /// A number with a decimal point, empty where a dash stands for nothing; a word as it is.
    std::string text;
    bool isNumber = true;
};

/// "from", "to" and "bandUnit".
std::vector<Field> listBand(const ResultTable::Band& band);

/// The cells of the row, with those of `listBand` in the place of the band's cell. The same names for every
/// row of the table.
std::vector<Field> listFields(const ResultTable& table, const ResultTable::Row& row);

/// The number, or else the text of a value beside the table; empty when it was not measured.
std::string toValueText(const ResultTable::Value& value);

/// Name and text of what is known of the circumstances, device and beginning first. Names as in the files.
std::vector<std::pair<std::string, std::string>> listCircumstances(const TestSummary& summary);

} // namespace KesMeasure::ResultFormats
