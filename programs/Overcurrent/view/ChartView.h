#pragma once

#include <Overcurrent/chart/ChartDrawing.h>
#include <Overcurrent/view/IChartView.h>

#include <gtkmm/drawingarea.h>

namespace Overcurrent {

/// The chart as a widget: it takes its colours and font from the theme, tells assistive technology its
/// content in words, and the point under the pointer in a tooltip. GUI thread.
class ChartView : public Gtk::DrawingArea, public IChartView {
public:
    ChartView();

    void setChart(const ChartData& chart) override;
    void setPointTexts(std::vector<std::string> texts) override;

protected:
    bool on_draw(const Cairo::RefPtr<Cairo::Context>& cairo) override;
    void get_preferred_width_vfunc(int& minimum, int& natural) const override;
    void get_preferred_height_vfunc(int& minimum, int& natural) const override;

private:
    bool _onQueryTooltip(int x, int y, bool keyboard, const Glib::RefPtr<Gtk::Tooltip>& tooltip);
    ChartDrawing _makeDrawing();
    int _lineHeight() const;

    ChartData _chart;
    std::vector<std::string> _pointTexts;
};

} // namespace Overcurrent
