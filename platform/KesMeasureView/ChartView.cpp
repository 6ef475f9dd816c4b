#include <KesMeasureView/ChartView.h>

#include <KesCommonView/GtkWidgetHelper.h>

#include <atkmm/object.h>
#include <gtkmm/stylecontext.h>
#include <gtkmm/tooltip.h>

namespace KesMeasure {

namespace {

/// A colour of the theme, or what a theme without it has to do with.
Gdk::RGBA themeColour(const Glib::RefPtr<Gtk::StyleContext>& style, const char* name,
                      const Gdk::RGBA& otherwise)
{
    Gdk::RGBA colour;
    return style->lookup_color(name, colour) ? colour : otherwise;
}

/// The themes' colours are made for large areas; thin lines and small signs need more contrast.
Gdk::RGBA contrasted(const Gdk::RGBA& colour, const Gdk::RGBA& foreground)
{
    const auto mix = [](double one, double other) { return one * 0.7 + other * 0.3; };
    Gdk::RGBA mixed;
    mixed.set_rgba(mix(colour.get_red(), foreground.get_red()),
                   mix(colour.get_green(), foreground.get_green()),
                   mix(colour.get_blue(), foreground.get_blue()));
    return mixed;
}

ChartColours themeColours(const Glib::RefPtr<Gtk::StyleContext>& style)
{
    const auto foreground = style->get_color(style->get_state());
    ChartColours colours;
    colours.foreground = foreground;
    colours.background = themeColour(style, "theme_base_color", Gdk::RGBA("transparent"));
    colours.curve = contrasted(themeColour(style, "theme_selected_bg_color", foreground), foreground);
    colours.passed = contrasted(themeColour(style, "success_color", foreground), foreground);
    colours.failed = contrasted(themeColour(style, "error_color", foreground), foreground);
    return colours;
}

} // namespace

ChartView::ChartView()
{
    get_style_context()->add_class("chart");
    set_has_tooltip(true);
    signal_query_tooltip().connect(sigc::mem_fun(*this, &ChartView::_onQueryTooltip));
    set_hexpand(true);
    set_vexpand(true);
    if (const auto accessible = get_accessible())
        accessible->set_role(Atk::ROLE_IMAGE);
}

void ChartView::setChart(const Chart& chart)
{
    _chart = chart;
    Kes::GtkWidgetHelper::setAccessibleName(*this, _chart.title);
    if (const auto accessible = get_accessible())
        accessible->set_description(_chart.describe());
    queue_draw();
}

ChartDrawing ChartView::_makeDrawing()
{
    return ChartDrawing(
        _chart, themeColours(get_style_context()),
        [this](const std::string& text) { return create_pango_layout(text); }, get_allocated_width(),
        get_allocated_height());
}

bool ChartView::on_draw(const Cairo::RefPtr<Cairo::Context>& cairo)
{
    _makeDrawing().draw(cairo);
    return true;
}

bool ChartView::_onQueryTooltip(int x, int y, bool, const Glib::RefPtr<Gtk::Tooltip>& tooltip)
{
    const auto point = _makeDrawing().findPoint(x, y);
    if (!point || _chart.points[*point].text.empty())
        return false;
    tooltip->set_text(_chart.points[*point].text);
    return true;
}

int ChartView::_lineHeight() const
{
    int width = 0;
    int height = 0;
    const_cast<ChartView*>(this)->create_pango_layout("0")->get_pixel_size(width, height);
    return height;
}

void ChartView::get_preferred_width_vfunc(int& minimum, int& natural) const
{
    minimum = 16 * _lineHeight();
    natural = 48 * _lineHeight();
}

void ChartView::get_preferred_height_vfunc(int& minimum, int& natural) const
{
    minimum = 9 * _lineHeight();
    natural = 21 * _lineHeight();
}

} // namespace KesMeasure
