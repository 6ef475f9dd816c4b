#include <KesMeasure/detail/JsonWriter.h>
#include <KesMeasure/detail/ResultFormats.h>

#include <KesCommon/NumberText.h>
#include <KesMeasure/ReportXml.h>

namespace KesMeasure::ResultFormats {

namespace {

void addCell(JsonWriter& json, const ResultTable::Column& column, const std::string& cell)
{
    const auto text = toCellText(column, cell);
    if (text.empty())
        json.addNull(column.name);
    else if (const auto number = column.isNumber ? Kes::NumberText::read(text) : std::nullopt)
        json.addNumber(column.name, *number);
    else
        json.addText(column.name, text);
}

void addRow(JsonWriter& json, const ResultTable& table, const ResultTable::Row& row)
{
    json.beginObject();
    json.addText("id", toValidText(row.id));
    for (std::size_t i = 0; i < table.columns.size() && i < row.cells.size(); ++i)
        addCell(json, table.columns[i], row.cells[i]);
    json.addText("mark", ReportXml::wordOf(row.mark));
    json.endObject();
}

void addValue(JsonWriter& json, const ResultTable::Value& value)
{
    json.beginObject();
    json.addText("id", toValidText(value.id));
    json.addText("name", toValidText(value.name));
    if (value.number)
        json.addNumber("value", *value.number);
    else
        json.addNull("value");
    json.addText("unit", toValidText(value.unit));
    json.addText("text", toValidText(value.value));
    json.addText("verdict", toValidText(value.verdict));
    json.addText("mark", ReportXml::wordOf(value.mark));
    json.endObject();
}

} // namespace

std::string toJson(const TestSummary& summary)
{
    JsonWriter json;
    json.beginObject();
    json.addText("program", toValidText(summary.program));
    json.addText("verdict", ReportXml::wordOf(summary.verdict));
    json.addText("outcome", toValidText(summary.outcome));
    for (const auto& [name, text] : listCircumstances(summary))
        json.addText(name, text);
    if (summary.circumstances)
        json.addBoolean("changedByHand", summary.circumstances->isChangedByHand());
    json.beginObject("nameplate");
    for (const auto& remark : summary.nameplate)
        json.addText(remark.id, toValidText(remark.text));
    json.endObject();
    json.beginArray("rows");
    for (const auto& row : summary.table.rows)
        addRow(json, summary.table, row);
    json.endArray();
    json.beginArray("values");
    for (const auto& value : summary.table.values)
        addValue(json, value);
    json.endArray();
    json.endObject();
    return json.getText();
}

} // namespace KesMeasure::ResultFormats
