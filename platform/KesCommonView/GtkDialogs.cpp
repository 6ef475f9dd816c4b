#include <KesCommonView/GtkDialogs.h>

#include <KesCommon/StringHelper.h>
#include <KesCommonView/FileNamePattern.h>
#include <KesCommonView/GtkWidgetHelper.h>
#include <KesCommonView/detail/CommonViewText.h>

#include <glibmm/convert.h>
#include <glibmm/fileutils.h>
#include <glibmm/main.h>
#include <glibmm/miscutils.h>
#include <gtkmm/button.h>
#include <gtkmm/dialog.h>
#include <gtkmm/filechoosernative.h>
#include <gtkmm/label.h>
#include <gtkmm/messagedialog.h>
#include <gtkmm/progressbar.h>
#include <gtkmm/scrolledwindow.h>

#include <algorithm>

namespace Kes {

namespace {

/// Texts beyond one of these limits scroll, so that the buttons stay on the screen.
constexpr std::ptrdiff_t maximumLines = 16;
constexpr std::size_t maximumBytes = 2000;
constexpr int scrolledHeight = 300;
constexpr int textWidthInCharacters = 64;

/// In milliseconds.
constexpr unsigned waitingInterval = 50;

struct ButtonCaption {
    DialogResult button;
    const char* key;
};

/// In the order of the buttons, from the left.
constexpr ButtonCaption captions[] = {{DialogResult::Cancel, "Button.cancel"},
                                      {DialogResult::No, "Button.no"},
                                      {DialogResult::Yes, "Button.yes"},
                                      {DialogResult::Ok, "Button.ok"}};

std::string getTitle(const std::string& title)
{
    return title.empty() ? Glib::get_application_name().raw() : title;
}

/// A path may hold any bytes; GTK shows UTF-8 only.
Glib::ustring getShownText(const std::string& text)
{
    return Glib::convert_return_gchar_ptr_to_ustring(
        g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
}

void setParent(Gtk::Window& box, IView* parent)
{
    if (auto* window = GtkWidgetHelper::getParentWindow(parent))
        box.set_transient_for(*window);
}

void formatText(Gtk::Label& label)
{
    label.set_selectable(true);
    // It also takes away GTK's bold, which is hard to read when the text is long.
    GtkWidgetHelper::wrapAnywhere(label);
    label.set_max_width_chars(textWidthInCharacters);
    label.set_xalign(0);
}

bool isLong(const std::string& text)
{
    return text.size() > maximumBytes || std::count(text.begin(), text.end(), '\n') > maximumLines;
}

void makeScrollable(Gtk::Label& label, Gtk::Box& area)
{
    auto* scrolled = Gtk::manage(new Gtk::ScrolledWindow);
    scrolled->set_policy(Gtk::POLICY_NEVER, Gtk::POLICY_AUTOMATIC);
    scrolled->set_min_content_height(scrolledHeight);
    label.reference();
    GtkWidgetHelper::removeChild(area, label);
    scrolled->add(label);
    label.unreference();
    label.set_width_chars(textWidthInCharacters);
    area.pack_start(*scrolled, Gtk::PACK_EXPAND_WIDGET);
    scrolled->show_all();
}

void formatBox(Gtk::MessageDialog& box, const std::string& text)
{
    auto& area = *box.get_message_area();
    for (auto* child : area.get_children()) {
        auto* label = dynamic_cast<Gtk::Label*>(child);
        if (!label || !label->get_visible())
            continue;
        formatText(*label);
        if (isLong(text))
            makeScrollable(*label, area);
    }
}

void addButtons(Gtk::MessageDialog& box, DialogResult buttons)
{
    for (const auto& [button, key] : captions)
        if (hasButton(buttons, button))
            box.add_button(lng::CommonView::get(key), static_cast<int>(button));
    const int declining = static_cast<int>(decliningAnswer(buttons));
    box.set_default_response(declining);
    if (auto* button = box.get_widget_for_response(declining))
        button->grab_focus();
}

void prepare(Gtk::MessageDialog& box, const MessageRequest& request)
{
    box.set_title(getTitle(request.title));
    setParent(box, request.parent);
    formatBox(box, request.text);
    addButtons(box, request.buttons);
}

std::string ask(const Glib::RefPtr<Gtk::FileChooserNative>& chooser,
                const std::vector<Glib::RefPtr<Gtk::FileFilter>>& filters, const FileRequest& request)
{
    if (chooser->run() != Gtk::RESPONSE_ACCEPT)
        return {};
    const std::string path = chooser->get_filename();
    const auto chosen = std::find(filters.begin(), filters.end(), chooser->get_filter());
    if (!request.save || chosen == filters.end())
        return path;
    const auto& pattern = request.filters[static_cast<std::size_t>(chosen - filters.begin())].first;
    // Who takes the name as it was offered and chooses another kind does not want the kind of that name.
    if (path == request.suggestion)
        return FileNamePattern::exchange(path, request.filters.front().first, pattern);
    return FileNamePattern::complete(path, pattern);
}

void suggest(const Glib::RefPtr<Gtk::FileChooserNative>& chooser, const FileRequest& request)
{
    if (!request.save || request.suggestion.empty())
        return;
    chooser->set_current_folder(Glib::path_get_dirname(request.suggestion));
    chooser->set_current_name(Glib::filename_display_basename(request.suggestion));
}

bool mayReplace(const FileRequest& request, const std::string& path)
{
    if (!request.save || !Glib::file_test(path, Glib::FILE_TEST_EXISTS))
        return true;
    const auto text = StringHelper::format(lng::CommonView::get("File.replace"), path);
    return DialogBackend::get().showMessage({request.parent, text, request.title, DialogResult::YesNo}) ==
           DialogResult::Yes;
}

} // namespace

DialogResult GtkDialogs::showMessage(const MessageRequest& request)
{
    const bool isQuestion = request.buttons != DialogResult::Ok;
    // What asks nothing is a fault or something that could not be done.
    Gtk::MessageDialog box(getShownText(request.text), false,
                           isQuestion ? Gtk::MESSAGE_QUESTION : Gtk::MESSAGE_WARNING, Gtk::BUTTONS_NONE,
                           true);
    prepare(box, request);
    GtkWidgetHelper::setAccessibleName(
        box, lng::CommonView::get(isQuestion ? "Dialog.question" : "Dialog.message"));
    sigc::connection watch;
    if (request.isVoid)
        watch = Glib::signal_timeout().connect(
            [&] {
                if (request.isVoid())
                    box.response(Gtk::RESPONSE_DELETE_EVENT);
                return true;
            },
            waitingInterval);
    const auto answer = static_cast<DialogResult>(box.run());
    watch.disconnect();
    return hasButton(request.buttons, answer) ? answer : decliningAnswer(request.buttons);
}

std::string GtkDialogs::chooseFile(const FileRequest& request)
{
    const auto action = request.save ? Gtk::FILE_CHOOSER_ACTION_SAVE : Gtk::FILE_CHOOSER_ACTION_OPEN;
    const auto chooser = Gtk::FileChooserNative::create(
        getTitle(request.title), action, lng::CommonView::get(request.save ? "Button.save" : "Button.open"),
        lng::CommonView::get("Button.cancel"));
    chooser->set_modal(true);
    if (auto* window = GtkWidgetHelper::getParentWindow(request.parent))
        chooser->set_transient_for(*window);
    std::vector<Glib::RefPtr<Gtk::FileFilter>> filters;
    for (const auto& [pattern, label] : request.filters) {
        filters.push_back(Gtk::FileFilter::create());
        filters.back()->add_pattern(FileNamePattern::ignoreCase(pattern));
        filters.back()->set_name(label);
        chooser->add_filter(filters.back());
    }
    if (!filters.empty())
        chooser->set_filter(filters.front());
    // The chooser would ask about the name as typed; the question is about the completed one.
    chooser->set_do_overwrite_confirmation(false);
    suggest(chooser, request);
    auto path = ask(chooser, filters, request);
    while (!path.empty() && !mayReplace(request, path)) {
        chooser->set_filename(path);
        path = ask(chooser, filters, request);
    }
    return path;
}

bool GtkDialogs::showWaiting(const MessageRequest& request, const std::function<bool()>& isOver)
{
    Gtk::MessageDialog box(getShownText(request.text), false, Gtk::MESSAGE_INFO, Gtk::BUTTONS_NONE, true);
    prepare(box, request);
    GtkWidgetHelper::setAccessibleName(box, lng::CommonView::get("Dialog.waiting"));
    Gtk::ProgressBar bar;
    box.get_message_area()->pack_start(bar, Gtk::PACK_SHRINK);
    bar.show();
    sigc::connection watch = Glib::signal_timeout().connect(
        [&] {
            if (isOver())
                box.response(Gtk::RESPONSE_OK);
            bar.pulse();
            return true;
        },
        waitingInterval);
    const int response = box.run();
    watch.disconnect();
    return response == Gtk::RESPONSE_OK;
}

void GtkDialogs::dismissAll()
{
    for (auto* window : Gtk::Window::list_toplevels())
        if (auto* dialog = dynamic_cast<Gtk::Dialog*>(window); dialog && dialog->get_visible())
            dialog->response(Gtk::RESPONSE_DELETE_EVENT);
}

} // namespace Kes
