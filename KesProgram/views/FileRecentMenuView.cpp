#include <KesProgram/views/FileRecentMenuView.h>

#include <KesCommonView/GtkWidgetHelper.h>

#include <gtkmm/label.h>
#include <gtkmm/menuitem.h>

#include <map>

namespace KesProgram {

namespace {

constexpr int widestPath = 60; // characters
/// What is surely seen of each end of a shortened path, in characters.
constexpr int seenEnd = 20;

/// What a path looks like once it has been shortened, at least.
Glib::ustring looks(const Glib::ustring& path)
{
    return path.size() <= widestPath ? path : path.substr(0, seenEnd) + path.substr(path.size() - seenEnd);
}

/// In the middle; a path that would look like another one stays whole, on several lines.
void fit(Gtk::MenuItem& item, const Glib::ustring& path, bool isAlone)
{
    auto* label = dynamic_cast<Gtk::Label*>(item.get_child());
    if (!label || path.size() <= widestPath)
        return;
    label->set_max_width_chars(widestPath);
    if (isAlone) {
        label->set_ellipsize(Pango::ELLIPSIZE_MIDDLE);
        item.set_tooltip_text(path);
    } else {
        Kes::GtkWidgetHelper::wrapAnywhere(*label, Pango::WRAP_CHAR);
    }
}

} // namespace

FileRecentMenuView::FileRecentMenuView()
{
    _keep(*this);
}

void FileRecentMenuView::setFileCollection(const std::vector<std::string>& paths)
{
    Kes::GtkWidgetHelper::removeChildren(*this);
    std::map<std::string, int> alike;
    for (const auto& path : paths)
        ++alike[looks(Glib::ustring(path).make_valid())];
    for (const auto& path : paths)
        _addFile(path, alike[looks(Glib::ustring(path).make_valid())] == 1);
    show_all();
}

void FileRecentMenuView::_addFile(const std::string& path, bool isAlone)
{
    const Glib::ustring shown = Glib::ustring(path).make_valid();
    auto* item = Gtk::make_managed<Gtk::MenuItem>(shown, false);
    fit(*item, shown, isAlone);
    if (shown == path)
        item->signal_activate().connect([this, item] { signalFile.emit(item->get_label()); });
    else // what the label shows of a path that is not UTF-8 does not lead back to the file
        item->signal_activate().connect([this, path] { signalFile.emit(path); });
    insert(*item, 0);
}

} // namespace KesProgram
