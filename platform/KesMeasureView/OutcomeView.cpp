#include <KesMeasureView/OutcomeView.h>

#include <KesMeasure/MeasureText.h>
#include <KesMeasure/ScreenNumber.h>
#include <KesMeasureView/MarkText.h>

#include <KesCommon/StringHelper.h>
#include <KesCommonView/GtkWidgetHelper.h>

#include <cmath>

namespace KesMeasure {

namespace {

using lng::Measure::get;

void prepareNotice(Gtk::Label& label, const char* styleClass)
{
    label.set_xalign(0.0f);
    label.set_line_wrap(true);
    label.set_no_show_all(true);
    label.get_style_context()->add_class("notice");
    label.get_style_context()->add_class(styleClass);
}

} // namespace

OutcomeView::OutcomeView() : Gtk::Box(Gtk::ORIENTATION_VERTICAL), _line(Gtk::ORIENTATION_HORIZONTAL)
{
    get_style_context()->add_class("outcome");
    _line.get_style_context()->add_class("outcome-line");
    _outcome.get_style_context()->add_class("outcome-text");
    _outcome.set_xalign(0.0f);
    _outcome.set_line_wrap(true);
    _outcome.set_lines(2);
    _outcome.set_ellipsize(Pango::ELLIPSIZE_END);
    _progress.set_show_text(true);
    _progress.set_valign(Gtk::ALIGN_CENTER);
    _progress.set_size_request(220, -1);
    _progress.set_no_show_all(true);
    Kes::GtkWidgetHelper::setAccessibleName(_progress, get("Results.progress"));
    prepareNotice(_origin, "notice-simulated");
    prepareNotice(_stale, "notice-stale");
    _stale.set_text(get("Outcome.stale"));
    _line.pack_start(_outcome, Gtk::PACK_EXPAND_WIDGET);
    _line.pack_end(_progress, Gtk::PACK_SHRINK);
    pack_start(_line, Gtk::PACK_SHRINK);
    pack_start(_origin, Gtk::PACK_SHRINK);
    pack_start(_stale, Gtk::PACK_SHRINK);
}

void OutcomeView::setOutcome(const Outcome& outcome)
{
    const std::string shown = withSign(outcome.text, outcome.mark);
    _outcome.set_text(shown);
    Kes::GtkWidgetHelper::setTooltip(_outcome, shown);
    const auto style = _outcome.get_style_context();
    for (const auto other : {Mark::None, Mark::Passed, Mark::Failed})
        style->remove_class(styleClass(other));
    style->add_class(styleClass(outcome.mark));
}

void OutcomeView::setOrigin(Origin origin)
{
    _origin.set_text(get(origin == Origin::Unknown ? "Unknown.notice" : "Simulated.notice"));
    _origin.set_visible(origin != Origin::Device);
}

void OutcomeView::setStale(bool stale)
{
    _stale.set_visible(stale);
}

void OutcomeView::setProgress(double share, double remaining)
{
    const std::string percent = std::to_string(std::lround(share * 100.0)) + " %";
    _progress.set_fraction(share);
    _progress.set_text(
        Kes::StringHelper::format(get("Run.left"), percent, ScreenNumber::duration(remaining)));
}

void OutcomeView::setRunning(bool running)
{
    _progress.set_visible(running);
}

} // namespace KesMeasure
