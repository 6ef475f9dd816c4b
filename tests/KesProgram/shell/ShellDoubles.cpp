#include "ShellDoubles.h"

#include "support/MainLoop.h"

#include <KesProgram/views/IProgramView.h>

#include <algorithm>
#include <sstream>
#include <utility>

namespace KesTest {

void Record::write(const std::string& entry)
{
    std::lock_guard lock(_mutex);
    _entries.push_back(entry);
}

std::vector<std::string> Record::take()
{
    std::lock_guard lock(_mutex);
    return std::exchange(_entries, {});
}

bool Record::has(const std::string& entry) const
{
    return count(entry) > 0;
}

std::size_t Record::count(const std::string& entry) const
{
    std::lock_guard lock(_mutex);
    return static_cast<std::size_t>(std::count(_entries.begin(), _entries.end(), entry));
}

ShellModel::ShellModel(Record& record) : _record(record)
{
    signalHardwareChanged.connect([this] { _record.write("hardware changed"); });
}

void ShellModel::startRun()
{
    {
        std::lock_guard lock(_mutex);
        _isEnded = false;
    }
    _setCanProgramStart(true);
    startTest();
    waitFor([this] { return isOutputStarted() && isRunning(); });
    runPendingEvents();
}

void ShellModel::endRun()
{
    std::lock_guard lock(_mutex);
    _isEnded = true;
    _ended.notify_all();
}

void ShellModel::init()
{
    _record.write("model init");
    ProgramModel::init();
}

std::string ShellModel::getExtension()
{
    return extension;
}

std::unique_ptr<std::istream> ShellModel::getDataStream()
{
    return std::make_unique<std::istringstream>(data);
}

void ShellModel::_onStart()
{
    {
        std::unique_lock lock(_mutex);
        _ended.wait(lock, [this] { return _isEnded; });
    }
    _finish();
}

void ShellModel::_onStop()
{
    _record.write("model stop");
    if (stopsLater)
        _setCanProgramStop(true);
    else
        endRun();
}

void ShellModel::_onClosing()
{
    isClosing = true;
    _record.write("model closing");
}

ShellPresenter::ShellPresenter(ShellModel& model, Record& record) : _model(model), _record(record)
{
    signalOpened.connect([this] { _hook("opened"); });
    signalClosed.connect([this] { _hook("closed"); });
}

Gtk::Window& ShellPresenter::getWindow()
{
    return dynamic_cast<Gtk::Window&>(*getView());
}

void ShellPresenter::clickClose()
{
    GdkEvent* event = gdk_event_new(GDK_DELETE);
    event->any.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(GTK_WIDGET(getWindow().gobj()))));
    gtk_main_do_event(event);
    gdk_event_free(event);
}

void ShellPresenter::_evalOpen(KesProgram::IProgramView* view, Kes::IView* parent)
{
    _hook("eval open");
    ProgramBasePresenter::_evalOpen(view, parent);
}

void ShellPresenter::_onFinishedFromModel(bool outputStarted)
{
    _hook(outputStarted ? "finished" : "finished without output");
}

std::unique_ptr<Kes::IPresenter> ShellPresenter::_createStatusBar()
{
    _hook("create status bar");
    return hasStatusBar ? ProgramBasePresenter::_createStatusBar() : nullptr;
}

void ShellPresenter::_loadXmlConfig()
{
    _hook("load config");
    ProgramBasePresenter::_loadXmlConfig();
}

void ShellPresenter::_fillXmlConfig(xmlpp::Element* root)
{
    _hook("fill config");
    ProgramBasePresenter::_fillXmlConfig(root);
}

void ShellPresenter::_hook(const std::string& name)
{
    _record.write(name);
    if (onHook)
        onHook(name);
}

} // namespace KesTest
