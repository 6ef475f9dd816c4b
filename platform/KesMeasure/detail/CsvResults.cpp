// As RFC 4180 has it: a line of names, commas, quotes where they are needed, line ends of two characters.

#include <KesMeasure/detail/ResultFormats.h>

#include <KesMeasure/ReportXml.h>

namespace KesMeasure::ResultFormats {

namespace {

using Line = std::vector<std::string>;

std::string quoted(const std::string& text)
{
    if (text.find_first_of("\",\r\n") == std::string::npos)
        return text;
    std::string all = "\"";
    for (const char c : text)
        all += c == '"' ? std::string("\"\"") : std::string(1, c);
    return all + '"';
}

std::string join(const Line& line)
{
    std::string text;
    for (std::size_t i = 0; i < line.size(); ++i)
        text += (i > 0 ? "," : "") + quoted(line[i]);
    return text + "\r\n";
}

/// In every line, so that tables of many tests can be put together: results of a simulated bench must not
/// pass for others then.
Line lastCells(const TestSummary& summary, Mark mark)
{
    if (!summary.circumstances)
        return {ReportXml::wordOf(mark), "", "", ""};
    const auto& test = *summary.circumstances;
    return {ReportXml::wordOf(mark), ReportXml::wordOf(test.origin), toValidText(test.device),
            test.startedAt};
}

void append(Line& line, const Line& more)
{
    line.insert(line.end(), more.begin(), more.end());
}

Line namesOf(const ResultTable& table)
{
    Line line{"id"};
    for (const auto& field : listFields(table, {}))
        line.push_back(field.name);
    if (!table.values.empty())
        append(line, {"value", "valueUnit"});
    append(line, {"mark", "origin", "device", "startedAt"});
    return line;
}

Line lineOf(const ResultTable& table, const ResultTable::Row& row)
{
    Line line{row.id};
    for (const auto& field : listFields(table, row))
        line.push_back(field.text);
    return line;
}

/// A value beside the table has no cells but the last one, its verdict.
Line lineOf(const ResultTable& table, const ResultTable::Value& value)
{
    ResultTable::Row row;
    row.id = value.id;
    row.cells.resize(table.columns.size());
    if (!row.cells.empty())
        row.cells.back() = value.verdict;
    row.band = value.band;
    auto line = lineOf(table, row);
    append(line, {toValueText(value), value.number ? value.unit : std::string()});
    return line;
}

} // namespace

std::string toCsv(const TestSummary& summary)
{
    const auto& table = summary.table;
    std::string text = join(namesOf(table));
    const auto add = [&](Line line, Mark mark) {
        append(line, lastCells(summary, mark));
        text += join(line);
    };
    for (const auto& row : table.rows) {
        auto line = lineOf(table, row);
        if (!table.values.empty())
            append(line, {"", ""});
        add(line, row.mark);
    }
    for (const auto& value : table.values)
        add(lineOf(table, value), value.mark);
    return text;
}

} // namespace KesMeasure::ResultFormats
