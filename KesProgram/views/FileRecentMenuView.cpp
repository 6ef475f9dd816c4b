#include <KesProgram/views/FileRecentMenuView.h>

#include <KesCommonView/GtkWidgetHelper.h>

#include <gtkmm/label.h>
#include <gtkmm/menuitem.h>

namespace KesProgram {

namespace {

constexpr int widestPath = 60; // characters

void shorten(Gtk::MenuItem& item, const Glib::ustring& path)
{
    auto* label = dynamic_cast<Gtk::Label*>(item.get_child());
    if (!label || path.size() <= widestPath)
        return;
    label->set_ellipsize(Pango::ELLIPSIZE_MIDDLE);
    label->set_max_width_chars(widestPath);
    item.set_tooltip_text(path);
}

} // namespace

FileRecentMenuView::FileRecentMenuView()
{
    _keep(*this);
}

void FileRecentMenuView::setFileCollection(const std::vector<std::string>& paths)
{
    Kes::GtkWidgetHelper::removeChildren(*this);
    for (const auto& path : paths)
        _addFile(path);
    show_all();
}

void FileRecentMenuView::_addFile(const std::string& path)
{
    const Glib::ustring shown = Glib::ustring(path).make_valid();
    auto* item = Gtk::make_managed<Gtk::MenuItem>(shown, false);
    shorten(*item, shown);
    if (shown == path)
        item->signal_activate().connect([this, item] { signalFile.emit(item->get_label()); });
    else // what the label shows of a path that is not UTF-8 does not lead back to the file
        item->signal_activate().connect([this, path] { signalFile.emit(path); });
    insert(*item, 0);
}

} // namespace KesProgram
