#pragma once

#include <KesProgram/model/ProgramModel.h>
#include <KesProgram/shell/ProgramBasePresenter.h>
#include <KesTree/Node.h>

#include <gtkmm/window.h>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace KesTest {

/// What happened, in order, on any thread.
class Record {
public:
    void write(const std::string& entry);
    std::vector<std::string> take();
    bool has(const std::string& entry) const;
    std::size_t count(const std::string& entry) const;

private:
    mutable std::mutex _mutex;
    std::vector<std::string> _entries;
};

/// A model with a hardware configuration of its own without devices, whose run goes on until it is stopped.
class ShellModel : public KesProgram::ProgramModel {
public:
    explicit ShellModel(Record& record);

    /// Empty: no archive logic.
    std::string extension;
    std::string data = "data";
    std::string report;
    std::unique_ptr<KesTree::Node> testObject;
    /// A stopped run goes on until `endRun`, as one does whose device has to be ramped down.
    bool stopsLater = false;
    /// `close` has been called.
    bool isClosing = false;

    using ProgramModel::_setCanProgramStart;
    using ProgramModel::_setCanProgramStop;
    using ProgramModel::_setState;

    /// Starts a run and waits until it is under way.
    void startRun();
    void endRun();

    void init() override;
    std::string getProgramName() override { return "Shell test"; }
    std::string getExtension() override;
    std::unique_ptr<std::istream> getDataStream() override;
    bool usesLocalHardware() override { return true; }
    KesTree::Node* getTestObject() override { return testObject.get(); }
    std::string createReport() override { return report; }
    KesProgram::RunVerdict getRunVerdict() override { return KesProgram::RunVerdict::None; }

protected:
    bool _onPrepareHardware() override { return true; }
    void _onStart() override;
    void _onStop() override;
    void _onFinishHardware() override {}
    void _onClosing() override;

private:
    Record& _record;
    std::mutex _mutex;
    std::condition_variable _ended;
    bool _isEnded = false;
};

/// A shell that writes down its hooks and lets a test at what is for concrete programs.
class ShellPresenter : public KesProgram::ProgramBasePresenter {
public:
    ShellPresenter(ShellModel& model, Record& record);

    bool hasStatusBar = true;
    /// Called in the hook of the name, after it has been written down.
    std::function<void(const std::string& hook)> onHook;

    using ProgramBasePresenter::_getMenuBar;
    using ProgramBasePresenter::_getProgramView;
    using ProgramBasePresenter::_getXmlConfigFullPath;
    using ProgramBasePresenter::_onClosing;
    using ProgramBasePresenter::_saveOnClosing;
    using ProgramBasePresenter::_saveXmlConfig;

    void openFile(const std::string&) override {}
    Gtk::Window& getWindow();
    /// Presses the window's close button, as far as the window is concerned.
    void clickClose();

protected:
    KesProgram::ProgramModel* _getModel() override { return &_model; }
    void _evalOpen(KesProgram::IProgramView* view, Kes::IView* parent) override;
    void _onBeforeInit() override { _hook("before init"); }
    void _onInit() override { _hook("init"); }
    void _onFinishedFromModel(bool outputStarted) override;
    std::unique_ptr<Kes::IPresenter> _createStatusBar() override;
    void _loadXmlConfig() override;
    void _fillXmlConfig(xmlpp::Element* root) override;

private:
    void _hook(const std::string& name);

    ShellModel& _model;
    Record& _record;
};

} // namespace KesTest
