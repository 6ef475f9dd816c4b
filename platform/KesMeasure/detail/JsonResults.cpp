#include <KesMeasure/detail/JsonWriter.h>
#include <KesMeasure/detail/ResultFormats.h>

#include <KesCommon/NumberText.h>
#include <KesMeasure/ReportXml.h>

namespace KesMeasure::ResultFormats {

namespace {

void addField(JsonWriter& json, const Field& field)
{
    if (field.text.empty())
        json.addNull(field.name);
    else if (const auto number = field.isNumber ? Kes::NumberText::read(field.text) : std::nullopt)
        json.addNumber(field.name, *number);
    else
        json.addText(field.name, field.text);
}

void addRow(JsonWriter& json, const ResultTable& table, const ResultTable::Row& row)
{
    json.beginObject();
    json.addText("id", toValidText(row.id));
    for (const auto& field : listFields(table, row))
        addField(json, field);
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
    for (const auto& field : listBand(value.band))
        addField(json, field);
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
