#pragma once

#include "support/GuiTest.h"
#include "support/Record.h"
#include "support/TemporaryHome.h"

#include <KesProgram/model/ProgramModel.h>
#include <KesProgram/shell/ProgramBasePresenter.h>
#include <KesProgram/views/IProgramView.h>
#include <KesTree/Node.h>

#include <thread>

namespace KesTest {

/// A model with a hardware configuration of its own without devices, whose run goes on until it is stopped.
/// Its hooks fail when the record says so.
class ShellModel : public KesProgram::ProgramModel {
public:
    explicit ShellModel(Record& record) : _record(record)
    {
        signalHardwareChanged.connect([this] { _record.write("hardware changed"); });
    }

    /// Empty: no archive logic.
    std::string extension;
    std::string data = "data";
    std::string report;
    bool writesReports = true;
    std::unique_ptr<KesTree::Node> testObject;
    /// A stopped run goes on until `endRun`, as one does whose device has to be ramped down.
    bool stopsLater = false;
    KesProgram::RunVerdict verdict = KesProgram::RunVerdict::None;
    /// `close` has been called.
    bool isClosing = false;

    using ProgramModel::_setCanProgramStart;
    using ProgramModel::_setCanProgramStop;
    using ProgramModel::_setState;

    /// Starts a run and waits until it is under way.
    void startRun()
    {
        _setCanProgramStart(true);
        startTest();
        waitFor([this] { return isOutputStarted() && isRunning(); });
        runPendingEvents();
    }
    void endRun() { _setEnded(true); }

    void init() override
    {
        _record.write("model init");
        ProgramModel::init();
    }
    std::string getProgramName() override
    {
        _record.failIn("getProgramName");
        return "Shell test";
    }
    bool hasArchiveLogic() override
    {
        _record.failIn("hasArchiveLogic");
        return ProgramModel::hasArchiveLogic();
    }
    void newData(const std::string&) override { _record.failIn("newData"); }
    std::string getExtension() override { return extension; }
    std::unique_ptr<std::istream> getDataStream() override
    {
        _record.failIn("getDataStream");
        return std::make_unique<std::istringstream>(data);
    }
    bool setDataStream(std::istream& stream, bool) override
    {
        data.assign(std::istreambuf_iterator<char>(stream), {});
        return true;
    }
    bool usesLocalHardware() override { return true; }
    KesTree::Node* getTestObject() override { return testObject.get(); }
    std::string createReport() override { return report; }
    bool hasReport() override { return writesReports; }
    KesProgram::RunVerdict getRunVerdict() override
    {
        _record.failIn("getRunVerdict");
        return verdict;
    }

protected:
    bool _onPrepareStart() override
    {
        _record.failIn("onPrepareStart");
        return true;
    }
    bool _onPrepareHardware() override
    {
        _record.failIn("onPrepareHardware");
        _setEnded(false);
        return true;
    }
    void _onStart() override
    {
        _record.failIn("onStart");
        _isEnded.wait(false);
        _finish();
    }
    void _onStop() override
    {
        if (stopsLater)
            _setCanProgramStop(true);
        else
            endRun();
        _record.write("model stop");
    }
    void _onFinishHardware() override {}
    void _onFinished() override { _record.failIn("onFinished"); }
    void _onClosing() override
    {
        isClosing = true;
        _record.write("model closing");
    }

private:
    void _setEnded(bool ended)
    {
        _isEnded = ended;
        _isEnded.notify_all();
    }

    Record& _record;
    std::atomic<bool> _isEnded{false};
};

/// A shell that writes down its hooks and lets a test at what is for concrete programs.
class ShellPresenter : public KesProgram::ProgramBasePresenter {
public:
    ShellPresenter(ShellModel& model, Record& record) : _model(model), _record(record)
    {
        signalOpened.connect([this] { _hook("opened"); });
        signalClosed.connect([this] { _hook("closed"); });
    }

    /// Called in the hook of the name, after it has been written down.
    std::function<void(const std::string& hook)> onHook;

    using ProgramBasePresenter::_getProgramView;
    using ProgramBasePresenter::_getXmlConfigFullPath;

    void _onClosing() override
    {
        _record.failIn("onClosing");
        ProgramBasePresenter::_onClosing();
    }
    void _saveXmlConfig() override
    {
        _record.failIn("saveXmlConfig");
        ProgramBasePresenter::_saveXmlConfig();
    }
    void loadXmlConfig() { ProgramBasePresenter::_loadXmlConfig(); }
    void openFile(const std::string&) override {}
    Gtk::Window& getWindow() { return dynamic_cast<Gtk::Window&>(*getView()); }
    /// Presses the window's close button, as far as the window is concerned.
    void clickClose()
    {
        GdkEvent* event = gdk_event_new(GDK_DELETE);
        event->any.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(GTK_WIDGET(getWindow().gobj()))));
        gtk_main_do_event(event);
        gdk_event_free(event);
    }

protected:
    KesProgram::ProgramModel* _getModel() override { return &_model; }
    void _evalOpen(KesProgram::IProgramView* view, Kes::IView* parent) override
    {
        _hook("eval open");
        ProgramBasePresenter::_evalOpen(view, parent);
    }
    void _onBeforeInit() override { _hook("before init"); }
    void _onInit() override { _hook("init"); }
    void _onFinishedFromModel(bool) override { _hook("finished"); }
    std::unique_ptr<Kes::IPresenter> _createStatusBar() override
    {
        _hook("create status bar");
        return ProgramBasePresenter::_createStatusBar();
    }
    void _loadXmlConfig() override
    {
        _hook("load config");
        ProgramBasePresenter::_loadXmlConfig();
    }
    void _fillXmlConfig(xmlpp::Element* root) override
    {
        _hook("fill config");
        ProgramBasePresenter::_fillXmlConfig(root);
    }

private:
    void _hook(const std::string& name)
    {
        _record.write(name);
        if (onHook)
            onHook(name);
    }

    ShellModel& _model;
    Record& _record;
};

/// A test with a model and a shell of its own in an empty home.
class ShellTest : public GuiTest {
protected:
    /// Ends a run and closes the program, so that each test also is one of an orderly end.
    ~ShellTest() override
    {
        model.endRun();
        if (!shell.getView())
            return;
        if (!model.isClosing)
            model.close();
        EXPECT_TRUE(waitFor([this] { return isClosed; }));
    }

    void open()
    {
        shell.open(nullptr);
        EXPECT_TRUE(waitFor([this] { return shell.getWindow().get_mapped(); }));
        record.take();
    }

    bool isWindowSeen() { return shell.getWindow().get_visible(); }

    static void onAnotherThread(const std::function<void()>& function) { std::thread(function).join(); }

    TemporaryHome home;
    Record record;
    ShellModel model{record};
    ShellPresenter shell{model, record};
    bool isClosed = false;
    sigc::connection closedConnection = shell.signalClosed.connect([this] { isClosed = true; });
};

} // namespace KesTest
