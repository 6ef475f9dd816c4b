#include <KesProgram/views/StatusBarHardwareView.h>

#include <KesCommonView/GtkWidgetHelper.h>
#include <KesDevice/HardwareManagerText.h>
#include <KesProgram/views/detail/RowsArea.h>
#include <KesProgram/views/detail/StatusArea.h>

namespace KesProgram {

namespace {

void replaceContent(Gtk::Box& box, Kes::IView* view)
{
    Kes::GtkWidgetHelper::removeChildren(box);
    auto* widget = dynamic_cast<Gtk::Widget*>(view);
    if (!widget)
        return;
    box.pack_start(*widget, false, false, 0);
    box.show_all();
}

} // namespace

StatusBarHardwareView::StatusBarHardwareView()
    : Gtk::HBox(false, 0),
      _sync(Gtk::ORIENTATION_HORIZONTAL),
      _rows(std::make_unique<RowsArea>()),
      _kestos(Gtk::ORIENTATION_HORIZONTAL),
      _stateUpdate(Gtk::ORIENTATION_HORIZONTAL)
{
    get_style_context()->add_class("statusHardware");
    set_hexpand(false);
    makeStatusArea(*this);

    _kestos.set_vexpand(false);
    _kestos.set_valign(Gtk::ALIGN_CENTER);
    Kes::GtkWidgetHelper::setAccessibleName(_kestos, lng::HardwareManager::get("Common.kestos"));
    _rows->add(_kestos);
    _columns.add(*_rows);
    pack_start(_sync, Gtk::PACK_SHRINK);
    pack_start(_columns, Gtk::PACK_SHRINK);
    pack_start(_stateUpdate, Gtk::PACK_SHRINK);
}

StatusBarHardwareView::~StatusBarHardwareView() = default;

void StatusBarHardwareView::setSyncView(Kes::IView* view)
{
    replaceContent(_sync, view);
}

void StatusBarHardwareView::setKestoCollection(Kes::IView* view)
{
    replaceContent(_kestos, view);
}

void StatusBarHardwareView::setStateUpdateView(Kes::IView* view)
{
    replaceContent(_stateUpdate, view);
}

} // namespace KesProgram
