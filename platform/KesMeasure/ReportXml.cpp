#include <KesMeasure/ReportXml.h>

#include <KesCommon/Language.h>
#include <KesCommon/StringHelper.h>
#include <KesMeasure/MeasureText.h>

#include <libxml++/libxml++.h>

namespace KesMeasure::ReportXml {

namespace {

/// The plot in the stylesheet's drawing, in its units.
constexpr double plotWidth = 640.0;
constexpr double plotHeight = 380.0;
/// Of its text, with room for other fonts.
constexpr double labelCharacter = 8.0;
constexpr double labelGap = 4.0;
constexpr double labelHeight = 15.0;
/// Left, top, width and height, with room for the labels.
constexpr const char* viewBox = "-58 -34 722 460";

std::string coordinate(double value)
{
    return Kes::StringHelper::format("%.2f", value);
}

/// The names that the stylesheet gives to captions, and the keys of their texts.
constexpr std::pair<const char*, const char*> captions[] = {{"title", "Caption.title"},
                                                            {"simulated", "Simulated.title"},
                                                            {"simulatedNotice", "Simulated.notice"},
                                                            {"unknown", "Unknown.title"},
                                                            {"unknownNotice", "Unknown.notice"},
                                                            {"device", "Caption.device"},
                                                            {"startedAt", "Caption.startedAt"},
                                                            {"nameplate", "Caption.nameplate"},
                                                            {"circumstances", "Caption.circumstances"},
                                                            {"settings", "Settings.title"},
                                                            {"plan", "Caption.plan"},
                                                            {"results", "Results.title"},
                                                            {"chart", "Deviations.title"},
                                                            {"quantity", "Column.quantity"},
                                                            {"value", "Caption.value"},
                                                            {"verdict", "Column.verdict"},
                                                            {"legendExpected", "Chart.expected"},
                                                            {"legendBand", "Chart.band"},
                                                            {"legendPassed", "Chart.passed"},
                                                            {"legendFailed", "Chart.failed"},
                                                            {"legendUnmeasured", "Caption.unmeasured"},
                                                            {"page", "Caption.page"},
                                                            {"ofPages", "Caption.ofPages"},
                                                            {"tester", "Caption.tester"},
                                                            {"approver", "Caption.approver"}};

const char* wordOf(ChartPoint::State state)
{
    static constexpr const char* words[] = {"planned", "passed", "failed", "unmeasured"};
    return words[static_cast<std::size_t>(state)];
}

/// Turns the chart's values into places in the plot, whose y axis points down.
class ChartWriter {
public:
    ChartWriter(xmlpp::Element& parent, const Chart& chart)
        : _chart(chart), _element(*parent.add_child("chart"))
    {}

    void write()
    {
        _element.set_attribute("viewBox", viewBox);
        _element.set_attribute("width", coordinate(plotWidth));
        _element.set_attribute("height", coordinate(plotHeight));
        _element.set_attribute("description", _chart.describe());
        _element.set_attribute("xTitle", _chart.xTitle);
        _element.set_attribute("yTitle", _chart.yTitle);
        const auto width = [](const std::string& label) {
            return static_cast<double>(label.size()) * labelCharacter + labelGap;
        };
        const auto height = [](const std::string&) { return labelHeight; };
        for (const auto& tick : _chart.x.getTicks(plotWidth, width))
            _addTick("x", tick, _x(tick.value));
        for (const auto& tick : _chart.y.getTicks(plotHeight, height))
            _addTick("y", tick, _y(tick.value));
        _writeCurve(_chart);
        for (const auto& curve : _chart.others)
            _writeCurve(curve);
        for (const auto& point : _chart.points) {
            auto& marker = *_element.add_child("marker");
            marker.set_attribute("x", coordinate(_x(point.position.x)));
            marker.set_attribute("y", coordinate(_y(point.position.y)));
            marker.set_attribute("mark", wordOf(point.state));
        }
    }

private:
    double _x(double value) const { return _chart.x.toShare(value) * plotWidth; }
    double _y(double value) const { return (1.0 - _chart.y.toShare(value)) * plotHeight; }

    void _addTick(const char* name, const AxisTick& tick, double at)
    {
        auto& element = *_element.add_child(name);
        element.set_attribute("at", coordinate(at));
        element.set_attribute("label", tick.label);
    }

    std::string _path(const std::vector<ChartPosition>& positions) const
    {
        std::string path;
        for (const auto& position : positions)
            path += (path.empty() ? "" : " ") + coordinate(_x(position.x)) + "," + coordinate(_y(position.y));
        return path;
    }

    void _writeCurve(const ChartCurve& curve)
    {
        const std::vector<ChartPosition> back(curve.lower.rbegin(), curve.lower.rend());
        _element.add_child("band")->set_attribute("points", _path(curve.upper) + " " + _path(back));
        _element.add_child("curve")->set_attribute("points", _path(curve.expected));
    }

    const Chart& _chart;
    xmlpp::Element& _element;
};

} // namespace

const char* wordOf(Verdict verdict)
{
    static constexpr const char* words[] = {"none", "passed", "failed", "stopped", "fault"};
    return words[static_cast<std::size_t>(verdict)];
}

const char* wordOf(Mark mark)
{
    static constexpr const char* words[] = {"none", "passed", "failed"};
    return words[static_cast<std::size_t>(mark)];
}

const char* wordOf(Origin origin)
{
    static constexpr const char* words[] = {"device", "simulated", "unknown"};
    return words[static_cast<std::size_t>(origin)];
}

void addHead(xmlpp::Element& root, Verdict verdict, const Outcome& outcome, const MeasuredTest* test,
             const std::string& results)
{
    root.set_attribute("language", lng::languageTag());
    std::vector<TextLine> lines;
    for (const auto& [name, key] : captions)
        lines.push_back({name, lng::Measure::get(key)});
    addLines(root, "captions", lines);
    root.set_attribute("verdict", wordOf(verdict));
    root.set_attribute("outcome", outcome.text);
    root.set_attribute("origin", wordOf(test ? test->origin : Origin::Device));
    if (!test)
        return;
    root.set_attribute("device", test->device);
    root.set_attribute("startedAt", test->startedAt);
    if (test->isChangedByHand())
        root.set_attribute("changedByHand", "true");
    addLines(root, "circumstances", test->describe(results));
}

void addLines(xmlpp::Element& parent, const char* name, const std::vector<TextLine>& lines)
{
    auto& group = *parent.add_child(name);
    for (const auto& line : lines) {
        auto& element = *group.add_child("line");
        element.set_attribute("name", line.name);
        element.set_attribute("value", line.value);
    }
}

void addResults(xmlpp::Element& parent, const ResultTable& table)
{
    auto& results = *parent.add_child("results");
    for (const auto& column : table.columns) {
        auto& element = *results.add_child("column");
        element.set_attribute("name", column.name);
        element.set_attribute("title", column.title);
        element.set_attribute("kind", column.isNumber ? "number" : "word");
    }
    for (const auto& row : table.rows) {
        auto& element = *results.add_child("point");
        for (std::size_t i = 0; i < table.columns.size() && i < row.cells.size(); ++i)
            element.set_attribute(table.columns[i].name, row.cells[i]);
        element.set_attribute("mark", wordOf(row.mark));
    }
    for (const auto& value : table.values) {
        auto& element = *results.add_child("value");
        element.set_attribute("name", value.name);
        element.set_attribute("value", value.value);
        element.set_attribute("verdict", value.verdict);
        element.set_attribute("mark", wordOf(value.mark));
    }
}

void addChart(xmlpp::Element& parent, const Chart& chart)
{
    ChartWriter(parent, chart).write();
}

} // namespace KesMeasure::ReportXml
