#pragma once

#include <KesCommon/Export.h>
#include <KesMeasure/Chart.h>

#include <cairomm/context.h>
#include <gdkmm/rgba.h>
#include <pangomm/layout.h>

#include <functional>
#include <memory>
#include <optional>

namespace KesMeasure {

class ChartLegend;

/// The colours of a chart, from the theme.
struct ChartColours {
    Gdk::RGBA foreground;
    Gdk::RGBA background;
    /// Of the expected characteristic and its band.
    Gdk::RGBA curve;
    /// Of the points.
    Gdk::RGBA passed;
    Gdk::RGBA failed;
};

/// Draws a chart on any Cairo surface: grid and labels, the expected curve with its tolerance band, the
/// points, a legend. A planned point is a small open circle, one that has passed a filled one, one that has
/// failed a crossed square, one without operation an open triangle, so they differ without colours. Made for
/// one drawing. GUI thread.
class KES_EXPORT ChartDrawing {
public:
    /// A layout of the text in the chart's font, such as `Gtk::Widget::create_pango_layout` makes. Called for
    /// each label.
    using MakeLayout = std::function<Glib::RefPtr<Pango::Layout>(const std::string& text)>;

    /// The chart outlives the drawing. All sizes follow the height of the layouts' text. A surface with too
    /// little room gets fewer labels, and its legend more lines or fewer entries.
    ChartDrawing(const Chart& chart, const ChartColours& colours, MakeLayout makeLayout, double width,
                 double height);
    ~ChartDrawing();

    /// Draws everything; the surface's unit is that of width and height. Curves end at the frame, points do
    /// not.
    void draw(const Cairo::RefPtr<Cairo::Context>& cairo);

    /// The point at a place of the surface, as an index into the chart's points: the nearest within 0.7 of
    /// the height of a text; nothing when there is none.
    std::optional<std::size_t> findPoint(double x, double y) const;

private:
    /// In the unit of the surface.
    struct Area {
        double left = 0.0;
        double top = 0.0;
        double width = 0.0;
        double height = 0.0;
    };
    enum class Align { Start, Middle, End };

    /// The place on the surface of a value of the axis.
    double _x(double value) const;
    double _y(double value) const;
    void _setColour(const Gdk::RGBA& colour, double alpha = 1.0);
    /// `y`: of the upper end of the text; `x`: of its beginning, middle or end.
    void _text(const std::string& text, double x, double y, Align align);
    double _textWidth(const std::string& text) const;
    void _drawGrid();
    void _drawLabels();
    void _drawCurves();
    void _drawCurve(const ChartCurve& curve);
    /// Adds a line through the positions to the path; `goesOn`: from where the path ends now.
    void _trace(const std::vector<ChartPosition>& positions, bool goesOn);
    void _drawPoint(double x, double y, ChartPoint::State state);
    void _drawPlanned(double x, double y);
    void _drawPassed(double x, double y);
    void _drawFailed(double x, double y);
    void _drawNotOperated(double x, double y);
    void _drawLegend();
    void _drawCurveSign(double x, double y, bool isBand);
    /// Of the title of the upright axis.
    double _titleLeft() const { return _line * 0.4; }
    /// The height of a line of the legend.
    double _legendRow() const { return _line * 1.2; }

    const Chart& _chart;
    const ChartColours _colours;
    const MakeLayout _makeLayout;
    /// The height of a line of text.
    double _line = 0.0;
    std::unique_ptr<ChartLegend> _legend;
    Area _plot;
    std::vector<AxisTick> _xTicks;
    std::vector<AxisTick> _yTicks;
    Cairo::RefPtr<Cairo::Context> _cairo;
};

} // namespace KesMeasure
