#include <KesMeasureView/ChartDrawing.h>

#include <KesMeasureView/detail/ChartLegend.h>

#include <algorithm>
#include <cmath>

namespace KesMeasure {

namespace {

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
    const double rightMargin = _line * 1.2;
    const double titleEnd = _titleLeft() + _textWidth(chart.yTitle);
    _legend = std::make_unique<ChartLegend>(
        chart, [this](const std::string& text) { return _textWidth(text); }, _line, _titleLeft(), titleEnd,
        width - rightMargin);
    _plot.top = _line * 2.0 + _legend->getExtraRows() * _legendRow();
    _plot.height = std::max(1.0, height - _plot.top - _line * 2.8);
    _yTicks = chart.y.getTicks(_plot.height, [this](const std::string&) { return _line; });
    double widest = 0.0;
    for (const auto& tick : _yTicks)
        widest = std::max(widest, _textWidth(tick.label));
    _plot.left = widest + _line;
    _plot.width = std::max(1.0, width - _plot.left - rightMargin);
    _xTicks = chart.x.getTicks(_plot.width,
                               [this](const std::string& label) { return _textWidth(label) + _line * 0.3; });
}

ChartDrawing::~ChartDrawing() = default;

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
    _text(_chart.yTitle, _titleLeft(), _line * 0.3, Align::Start);
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

void ChartDrawing::_drawLegend()
{
    for (const auto& entry : _legend->getEntries()) {
        const double top = _line * 0.3 + entry.row * _legendRow();
        const double middle = top + _line / 2.0;
        if (entry.state)
            _drawPoint(entry.left + _line * 0.3, middle, *entry.state);
        else
            _drawCurveSign(entry.left, middle, entry.isBand);
        _setColour(_colours.foreground);
        _text(entry.text, entry.textLeft, top, Align::Start);
    }
}

void ChartDrawing::_drawCurveSign(double x, double y, bool isBand)
{
    const double width = _line * 1.5;
    if (isBand) {
        _setColour(_colours.curve, 0.3);
        _cairo->rectangle(x, y - _line * 0.3, width, _line * 0.6);
        _cairo->fill();
        return;
    }
    _setColour(_colours.curve);
    _cairo->set_line_width(std::max(1.5, _line * 0.11));
    _cairo->move_to(x, y);
    _cairo->line_to(x + width, y);
    _cairo->stroke();
}

} // namespace KesMeasure
