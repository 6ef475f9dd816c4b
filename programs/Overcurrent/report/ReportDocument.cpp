#include <Overcurrent/report/ReportDocument.h>

#include <Overcurrent/chart/ChartData.h>
#include <Overcurrent/data/Evaluation.h>
#include <Overcurrent/data/Outcome.h>
#include <Overcurrent/data/ResultRow.h>
#include <Overcurrent/data/SettingsSummary.h>
#include <Overcurrent/data/XmlAttributes.h>

#include <KesCommon/StringHelper.h>
#include <KesProgram/text/Program.h>

#include <libxml++/libxml++.h>

namespace Overcurrent {

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

const char* markWord(Mark mark)
{
    switch (mark) {
    case Mark::Passed:
        return "passed";
    case Mark::Failed:
        return "failed";
    case Mark::None:
        break;
    }
    return "none";
}

const char* verdictWord(const TestResults* results)
{
    static constexpr const char* words[] = {"none", "passed", "failed", "stopped", "fault"};
    return results ? words[static_cast<std::size_t>(Evaluation::verdict(*results))] : words[0];
}

const char* originWord(Origin origin)
{
    static constexpr const char* words[] = {"device", "simulated", "unknown"};
    return words[static_cast<std::size_t>(origin)];
}

void addLines(xmlpp::Element& parent, const char* name, const std::vector<SettingsSummary::Line>& lines)
{
    auto& group = *parent.add_child(name);
    for (const auto& line : lines) {
        auto& element = *group.add_child("line");
        element.set_attribute("name", line.name);
        element.set_attribute("value", line.value);
    }
}

void addResults(xmlpp::Element& parent, const TestResults* results)
{
    for (const auto& row : results ? ResultRow::create(*results) : std::vector<ResultRow>()) {
        auto& element = *parent.add_child("point");
        element.set_attribute("number", row.number);
        element.set_attribute("multiple", row.multiple);
        element.set_attribute("current", row.current);
        element.set_attribute("expected", row.expected);
        element.set_attribute("measured", row.measured);
        element.set_attribute("deviation", row.deviation);
        element.set_attribute("deviationPercent", row.deviationPercent);
        element.set_attribute("tolerance", row.tolerance);
        element.set_attribute("verdict", row.verdict);
        element.set_attribute("mark", markWord(row.mark));
    }
    for (const auto& value : ResultValue::create(results)) {
        auto& element = *parent.add_child("value");
        element.set_attribute("name", value.name);
        element.set_attribute("value", value.value);
        element.set_attribute("verdict", value.verdict);
        element.set_attribute("mark", markWord(value.mark));
    }
}

/// Turns the chart's values into places in the plot, whose y axis points down.
class ChartWriter {
public:
    ChartWriter(xmlpp::Element& parent, const ChartData& chart)
        : _chart(chart), _element(*parent.add_child("chart"))
    {}

    void write()
    {
        _element.set_attribute("viewBox", viewBox);
        _element.set_attribute("width", coordinate(plotWidth));
        _element.set_attribute("height", coordinate(plotHeight));
        _element.set_attribute("description", _chart.describe());
        const auto width = [](const std::string& label) {
            return static_cast<double>(label.size()) * labelCharacter + labelGap;
        };
        const auto height = [](const std::string&) { return labelHeight; };
        for (const auto& tick : _chart.multiples.getTicks(plotWidth, width))
            _addTick("x", tick, _x(tick.value));
        for (const auto& tick : _chart.seconds.getTicks(plotHeight, height))
            _addTick("y", tick, _y(tick.value));
        _writeCurves();
        for (const auto& point : _chart.points) {
            auto& marker = *_element.add_child("marker");
            marker.set_attribute("x", coordinate(_x(point.position.multiple)));
            marker.set_attribute("y", coordinate(_y(point.position.seconds)));
            marker.set_attribute("mark", !point.isMeasured ? "unmeasured"
                                         : point.isPassed  ? "passed"
                                                           : "failed");
        }
    }

private:
    double _x(double multiple) const { return _chart.multiples.toShare(multiple) * plotWidth; }
    double _y(double seconds) const { return (1.0 - _chart.seconds.toShare(seconds)) * plotHeight; }

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
            path += (path.empty() ? "" : " ") + coordinate(_x(position.multiple)) + "," +
                    coordinate(_y(position.seconds));
        return path;
    }

    void _writeCurves()
    {
        const std::vector<ChartPosition> back(_chart.lower.rbegin(), _chart.lower.rend());
        _element.add_child("band")->set_attribute("points", _path(_chart.upper) + " " + _path(back));
        _element.add_child("curve")->set_attribute("points", _path(_chart.expected));
    }

    const ChartData& _chart;
    xmlpp::Element& _element;
};

} // namespace

std::string ReportDocument::create(const RelaySettings& settings, const TestPlan& plan,
                                   const TestResults* results, bool areResultsLost)
{
    return writeXml("report", [&](xmlpp::Element& root) {
        root.set_attribute("language", lng::languageName());
        root.set_attribute("verdict", verdictWord(results));
        root.set_attribute("outcome", Outcome::create(results, areResultsLost).text);
        root.set_attribute("origin", originWord(results ? results->origin : Origin::Device));
        if (results) {
            root.set_attribute("device", results->device);
            root.set_attribute("startedAt", results->startedAt);
        }
        addLines(root, "settings", SettingsSummary::describe(settings));
        addLines(root, "plan", SettingsSummary::describe(plan));
        addResults(*root.add_child("results"), results);
        const auto chart = ChartData::create(settings, plan, results);
        ChartWriter(root, chart).write();
    });
}

} // namespace Overcurrent
