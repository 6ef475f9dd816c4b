#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>
#include <KesMeasureView/ChartDrawing.h>

#include <gtkmm/drawingarea.h>

namespace KesMeasure {

/// The chart as a widget: it takes its colours and font from the theme, describes its content in words to
/// assistive technology, and the point under the pointer in a tooltip. GUI thread.
///
/// It shows, and lets nothing be changed or chosen. Its sizes are counted in lines of its font and so follow
/// the zoom: at least 16 wide and 9 high.
class KES_EXPORT ChartView : public Gtk::DrawingArea, public Kes::IView {
public:
    ChartView();

    /// Replaces the chart; a copy is kept. An empty chart is shown before the first call.
    void setChart(const Chart& chart);

protected:
    bool on_draw(const Cairo::RefPtr<Cairo::Context>& cairo) override;
    void get_preferred_width_vfunc(int& minimum, int& natural) const override;
    void get_preferred_height_vfunc(int& minimum, int& natural) const override;

private:
    bool _onQueryTooltip(int x, int y, bool keyboard, const Glib::RefPtr<Gtk::Tooltip>& tooltip);
    /// Of the present chart at the present size.
    ChartDrawing _makeDrawing();
    int _lineHeight() const;

    Chart _chart;
};

} // namespace KesMeasure
