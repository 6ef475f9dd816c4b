#include <KesProgram/views/detail/Pictures.h>

#include <KesCommon/Directories.h>
#include <KesCommon/Log.h>
#include <KesCommonView/Style.h>

#include <gtkmm/stylecontext.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

namespace KesProgram::Pictures {

namespace {

constexpr int canvasSize = 128; // pixels; holds a picture of any size that the toolkit gives it

constexpr const char* sheetName = "Icons.css";

bool isLoaded = false;

sigc::signal<void()>& waiting()
{
    static sigc::signal<void()> slots;
    return slots;
}

bool showsAnything(cairo_pattern_t* pattern)
{
    auto* canvas = cairo_image_surface_create(CAIRO_FORMAT_A8, canvasSize, canvasSize);
    auto* painter = cairo_create(canvas);
    cairo_set_source(painter, pattern);
    cairo_paint(painter);
    cairo_destroy(painter);
    cairo_surface_flush(canvas);
    const auto* begin = cairo_image_surface_get_data(canvas);
    const auto* end = begin + cairo_image_surface_get_stride(canvas) * canvasSize;
    const bool shown = std::any_of(begin, end, [](unsigned char alpha) { return alpha != 0; });
    cairo_surface_destroy(canvas);
    return shown;
}

/// The path that the sheet gives to one of the widget's classes; empty when it gives none.
std::string fileOf(const Gtk::Widget& widget)
{
    const std::filesystem::path path = Kes::findDataFile("themes/" + std::string(sheetName));
    std::ifstream file(path);
    const std::string sheet(std::istreambuf_iterator<char>(file), {});
    for (const auto& name : widget.get_style_context()->list_classes()) {
        const auto rule = sheet.find('.' + name.raw() + " {");
        const auto begin = sheet.find("url(\"", rule) + 5;
        if (rule != std::string::npos && begin < sheet.find('}', rule))
            return path.parent_path() / sheet.substr(begin, sheet.find('"', begin) - begin);
    }
    return {};
}

/// The toolkit says nothing of a file that is missing, and no name of one that is damaged.
void warn(const Gtk::Widget& widget)
{
    static std::set<std::string> told;
    const auto file = fileOf(widget);
    if (!file.empty() && told.insert(file).second)
        KesLog::Log::writeWarn("Picture " + file + " cannot be shown.");
}

bool isShown(const Gtk::Widget& widget)
{
    auto* context = gtk_widget_get_style_context(const_cast<GtkWidget*>(widget.gobj()));
    cairo_pattern_t* pattern = nullptr;
    gtk_style_context_get(context, gtk_style_context_get_state(context), GTK_STYLE_PROPERTY_BACKGROUND_IMAGE,
                          &pattern, nullptr);
    if (!pattern)
        return false;
    const bool shown = showsAnything(pattern);
    cairo_pattern_destroy(pattern);
    return shown;
}

} // namespace

void load()
{
    KesView::Style::setStyle(sheetName);
    isLoaded = true;
    waiting().emit();
    waiting().clear();
}

void afterLoad(const sigc::slot<void()>& slot)
{
    if (isLoaded)
        slot();
    else
        waiting().connect(slot);
}

bool has(const Gtk::Widget& widget)
{
    const bool shown = isShown(widget);
    if (!shown)
        warn(widget);
    return shown;
}

} // namespace KesProgram::Pictures
