#include <KesMeasureView/ChartDrawing.h>

#include <KesMeasure/MeasureText.h>

#include <algorithm>
#include <cmath>

namespace KesMeasure {

namespace {

using lng::Measure::get;

/// A line one pixel wide is sharp between two pixels only.
double sharp(double coordinate)
{
    return std::floor(coordinate) + 0.5;
}

} // namespace

ChartDrawing::ChartDrawing(const Chart& chart, const ChartColours& colours, MakeLayout makeLayout,
                           double width, double height)
    : _chart(chart), _colours(colours), _makeLayout(std::move(makeLayout))
{
    int textHeight = 0;
    int textWidth = 0;
    _makeLayout("0")->get_pixel_size(textWidth, textHeight);
    _line = textHeight;
    _plot.top = _line * 2.0;
    _plot.height = std::max(1.0, height - _plot.top - _line * 2.8);
    _yTicks = chart.y.getTicks(_plot.height, [this](const std::string&) { return _line; });
    double widest = 0.0;
    for (const auto& tick : _yTicks)
        widest = std::max(widest, _textWidth(tick.label));
    _plot.left = widest + _line;
    _plot.width = std::max(1.0, width - _plot.left - _line * 1.2);
    _xTicks = chart.x.getTicks(_plot.width,
                               [this](const std::string& label) { return _textWidth(label) + _line * 0.3; });
}

void ChartDrawing::draw(const Cairo::RefPtr<Cairo::Context>& cairo)
{
    _cairo = cairo;
    _setColour(_colours.background);
    _cairo->rectangle(_plot.left, _plot.top, _plot.width, _plot.height);
    _cairo->fill();
    _drawGrid();
    _cairo->save();
    _cairo->rectangle(_plot.left, _plot.top, _plot.width, _plot.height);
    _cairo->clip();
    _drawCurves();
    _cairo->restore();
    _setColour(_colours.foreground, 0.6);
    _cairo->set_line_width(1.0);
    _cairo->rectangle(sharp(_plot.left), sharp(_plot.top), std::floor(_plot.width), std::floor(_plot.height));
    _cairo->stroke();
    for (const auto& point : _chart.points)
        _drawPoint(_x(point.position.x), _y(point.position.y), point.state);
    _drawLabels();
    _drawLegend();
}

std::optional<std::size_t> ChartDrawing::findPoint(double x, double y) const
{
    std::optional<std::size_t> found;
    double nearest = _line * 0.7;
    for (std::size_t i = 0; i < _chart.points.size(); ++i) {
        const auto& position = _chart.points[i].position;
        const double distance = std::hypot(_x(position.x) - x, _y(position.y) - y);
        if (distance <= nearest) {
            nearest = distance;
            found = i;
        }
    }
    return found;
}

double ChartDrawing::_x(double value) const
{
    return _plot.left + _chart.x.toShare(value) * _plot.width;
}

double ChartDrawing::_y(double value) const
{
    return _plot.top + (1.0 - _chart.y.toShare(value)) * _plot.height;
}

void ChartDrawing::_setColour(const Gdk::RGBA& colour, double alpha)
{
    _cairo->set_source_rgba(colour.get_red(), colour.get_green(), colour.get_blue(),
                            colour.get_alpha() * alpha);
}

double ChartDrawing::_textWidth(const std::string& text) const
{
    int width = 0;
    int height = 0;
    _makeLayout(text)->get_pixel_size(width, height);
    return width;
}

void ChartDrawing::_text(const std::string& text, double x, double y, Align align)
{
    const double width = _textWidth(text);
    const double shift = align == Align::Start ? 0.0 : align == Align::Middle ? width / 2.0 : width;
    _cairo->move_to(std::round(x - shift), std::round(y));
    _makeLayout(text)->show_in_cairo_context(_cairo);
    // An arc drawn next would begin with a line from here.
    _cairo->begin_new_path();
}

void ChartDrawing::_drawGrid()
{
    _cairo->set_line_width(1.0);
    for (const auto& tick : _xTicks) {
        _setColour(_colours.foreground, tick.label.empty() ? 0.09 : 0.22);
        _cairo->move_to(sharp(_x(tick.value)), _plot.top);
        _cairo->rel_line_to(0.0, _plot.height);
        _cairo->stroke();
    }
    for (const auto& tick : _yTicks) {
        _setColour(_colours.foreground, tick.label.empty() ? 0.09 : 0.22);
        _cairo->move_to(_plot.left, sharp(_y(tick.value)));
        _cairo->rel_line_to(_plot.width, 0.0);
        _cairo->stroke();
    }
}

void ChartDrawing::_drawLabels()
{
    _setColour(_colours.foreground);
    const double below = _plot.top + _plot.height;
    for (const auto& tick : _xTicks)
        _text(tick.label, _x(tick.value), below + _line * 0.25, Align::Middle);
    for (const auto& tick : _yTicks)
        _text(tick.label, _plot.left - _line * 0.35, _y(tick.value) - _line / 2.0, Align::End);
    _text(_chart.xTitle, _plot.left + _plot.width, below + _line * 1.45, Align::End);
    _text(_chart.yTitle, _line * 0.4, _line * 0.3, Align::Start);
}

void ChartDrawing::_trace(const std::vector<ChartPosition>& positions, bool goesOn)
{
    for (const auto& position : positions) {
        if (goesOn)
            _cairo->line_to(_x(position.x), _y(position.y));
        else
            _cairo->move_to(_x(position.x), _y(position.y));
        goesOn = true;
    }
}

void ChartDrawing::_drawCurves()
{
    _drawCurve(_chart);
    for (const auto& curve : _chart.others)
        _drawCurve(curve);
}

void ChartDrawing::_drawCurve(const ChartCurve& curve)
{
    if (curve.expected.empty())
        return;
    _trace(curve.upper, false);
    _trace(std::vector<ChartPosition>(curve.lower.rbegin(), curve.lower.rend()), true);
    _cairo->close_path();
    _setColour(_colours.curve, 0.22);
    _cairo->fill_preserve();
    _setColour(_colours.curve, 0.35);
    _cairo->set_line_width(1.0);
    _cairo->stroke();
    _trace(curve.expected, false);
    _setColour(_colours.curve);
    _cairo->set_line_width(std::max(1.5, _line * 0.11));
    _cairo->set_line_join(Cairo::LINE_JOIN_ROUND);
    _cairo->stroke();
}

void ChartDrawing::_drawPoint(double x, double y, ChartPoint::State state)
{
    switch (state) {
    case ChartPoint::State::Planned:
        return _drawPlanned(x, y);
    case ChartPoint::State::Passed:
        return _drawPassed(x, y);
    case ChartPoint::State::Failed:
        return _drawFailed(x, y);
    case ChartPoint::State::NotOperated:
        return _drawNotOperated(x, y);
    }
}

void ChartDrawing::_drawPlanned(double x, double y)
{
    _cairo->arc(x, y, _line * 0.2, 0.0, 2.0 * M_PI);
    _setColour(_colours.background);
    _cairo->fill_preserve();
    _setColour(_colours.foreground, 0.6);
    _cairo->set_line_width(1.0);
    _cairo->stroke();
}

void ChartDrawing::_drawPassed(double x, double y)
{
    _cairo->arc(x, y, _line * 0.3, 0.0, 2.0 * M_PI);
    _setColour(_colours.passed);
    _cairo->fill_preserve();
    _setColour(_colours.background);
    _cairo->set_line_width(1.0);
    _cairo->stroke();
}

void ChartDrawing::_drawFailed(double x, double y)
{
    const double radius = _line * 0.3;
    _cairo->set_line_width(std::max(1.5, _line * 0.12));
    _cairo->rectangle(x - radius, y - radius, 2.0 * radius, 2.0 * radius);
    _setColour(_colours.background);
    _cairo->fill_preserve();
    _setColour(_colours.failed);
    _cairo->move_to(x - radius, y - radius);
    _cairo->line_to(x + radius, y + radius);
    _cairo->move_to(x - radius, y + radius);
    _cairo->line_to(x + radius, y - radius);
    _cairo->stroke();
}

void ChartDrawing::_drawNotOperated(double x, double y)
{
    const double radius = _line * 0.3;
    _cairo->set_line_width(std::max(1.5, _line * 0.12));
    _cairo->move_to(x, y - radius);
    _cairo->line_to(x + radius, y + radius);
    _cairo->line_to(x - radius, y + radius);
    _cairo->close_path();
    _setColour(_colours.background);
    _cairo->fill_preserve();
    _setColour(_colours.failed);
    _cairo->stroke();
}

bool ChartDrawing::_hasPoint(ChartPoint::State state) const
{
    return std::any_of(_chart.points.begin(), _chart.points.end(),
                       [state](const ChartPoint& point) { return point.state == state; });
}

void ChartDrawing::_drawLegend()
{
    const double y = _line * 0.9;
    double x = _plot.left + _plot.width;
    const auto label = [&](const char* key) {
        _setColour(_colours.foreground);
        _text(get(key), x, y - _line / 2.0, Align::End);
        x -= _textWidth(get(key)) + _line * 0.6;
    };
    const auto room = [&](double width) { return x - width > _line * 4.0; };
    using State = ChartPoint::State;
    std::vector<std::pair<const char*, State>> marks{{"Chart.failed", State::Failed},
                                                     {"Chart.passed", State::Passed}};
    if (_hasPoint(State::NotOperated))
        marks.insert(marks.begin(), {"Chart.notOperated", State::NotOperated});
    if (_hasPoint(State::Planned))
        marks.emplace_back("Chart.planned", State::Planned);
    for (const auto& [key, state] : marks) {
        if (!room(_textWidth(get(key)) + _line * 2.0))
            return;
        label(key);
        _drawPoint(x, y, state);
        x -= _line * 1.2;
    }
    if (_chart.expected.empty() ||
        !room(_textWidth(get("Chart.band")) + _textWidth(get("Chart.expected")) + _line * 6.0))
        return;
    label("Chart.band");
    _setColour(_colours.curve, 0.3);
    _cairo->rectangle(x - _line * 1.4, y - _line * 0.3, _line * 1.5, _line * 0.6);
    _cairo->fill();
    x -= _line * 2.4;
    label("Chart.expected");
    _setColour(_colours.curve);
    _cairo->set_line_width(std::max(1.5, _line * 0.11));
    _cairo->move_to(x - _line * 1.4, y);
    _cairo->line_to(x + _line * 0.1, y);
    _cairo->stroke();
}

} // namespace KesMeasure
