#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IKesShell.h>
#include <KesCommonView/IPresenter.h>

#include <sigc++/sigc++.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace KesDevice {
class HardwareManager;
}
namespace xmlpp {
class Element;
}

namespace KesProgram {

class ArchiveManagerPresenter;
class ConfigurationFile;
class FileRecentManager;
class IProgramView;
class LostWork;
class ProgramModel;
class ProgramMainMenuPresenter;

/// The main presenter of a test program: it builds the window around the model, carries the commands that
/// menus and toolbars call, and closes the program in good order.
///
/// A concrete program derives its presenter from this class, gives it the model through `_getModel` and
/// composes its menus, toolbars and content in `_onInit`. It owns presenter and model, and destroys them
/// after `signalClosed`. GUI thread; what the model reports on other threads is brought there.
///
/// Dialogs: messages of the model are shown one at a time, and a text that is already open or waiting is not
/// shown again. While a dialog is open or the program runs one (`runDialogs`), the signal gate
/// is free, a request to close waits, and `signalClosed` waits as well, so nothing dies under the dialog.
class KES_EXPORT ProgramBasePresenter : public Kes::IKesShell,
                                        public Kes::IPresenter,
                                        public sigc::trackable {
public:
    /// The window has been shown. Emitted at the end of every `open`.
    sigc::signal<void()> signalOpened;
    /// The program has been closed. A slot may destroy the presenter and the model.
    sigc::signal<void()> signalClosed;

    /// Makes the resources of the test-object tree known.
    ProgramBasePresenter();
    ~ProgramBasePresenter() override;
    ProgramBasePresenter(const ProgramBasePresenter&) = delete;
    ProgramBasePresenter& operator=(const ProgramBasePresenter&) = delete;

    /// Whether a user is there.
    enum class Attendance {
        User,
        /// Only after the program has done what the command line asks for; until then nothing is offered.
        Later,
        /// Never: recent files, last file and window place of the user stay unchanged.
        Never
    };
    /// Call it before the first `open`, and when a user takes over.
    void setAttendance(Attendance attendance);

    /// Builds the window when it is called first, and shows it over the parent's window (null: anywhere).
    /// When building has failed, every later call throws the same again.
    void open(Kes::IView* parent) override;
    void setPackageVersion(const std::string& version) override;
    /// The main window; null before the first `open`.
    Kes::IView* getView() override;

    /// The archive commands; nothing without archive logic and before the first `open`. This one: a new
    /// document.
    virtual void createArchive();
    /// The user chooses the file.
    virtual void openArchive();
    virtual void saveArchive();
    virtual void saveAsArchive();

    std::string getProgramName();
    /// Null without archive logic and before the first `open`.
    ArchiveManagerPresenter* getArchiveManagerPresenter();
    /// The model's recent files.
    FileRecentManager* getFileRecentManager();

    /// Opens the window of the hardware settings.
    void requestHardware();
    /// Opens the window of the test object; does nothing when it is open or there is no test object.
    void requestTestObject();
    /// Whether the program writes reports, as its model says.
    bool hasReport();
    /// Builds the report and opens it with the desktop's application; a failure is shown.
    virtual void requestReport();
    /// Closes the program as the window's close button does. Does nothing before the first `open` and while a
    /// question about closing is open; waits until an open dialog of the shell has been closed; asks once
    /// more when a stopped test still runs. An exception of a step reaches the caller, and the program stays
    /// open.
    void requestClose();
    /// Whether a request to close is being decided, is waiting, or has been carried out.
    bool isClosing() const;
    /// Closes the program without any question; unsaved data is lost. Call it only while no dialog is open.
    void closeWithoutQuestions();
    /// Inside a catch block, at the top of the main loop or in a callback of the toolkit: shows the text of
    /// the exception to the user. When the configuration could not be written while closing, the program then
    /// closes without it.
    void tellCurrentException();

    /// Writes the recovery copy of unsaved data at once, for a process that is about to end. Returns when it
    /// is on the disk or the time is over. True also when there was nothing to write. Any thread, also while
    /// an exception is being handled; throws nothing. See `RecoveryKeeper::writeNow`.
    bool writeRecoveryCopy(std::chrono::milliseconds time) noexcept;

    /// Runs a function that shows modal dialogs, at once; see above. An exception passes through.
    void runDialogs(const std::function<void()>& function);

protected:
    /// The program's model, always the same object; outlives `signalClosed`.
    virtual ProgramModel* _getModel() = 0;
    /// Shows the window. Default: not modal.
    virtual void _evalOpen(IProgramView* view, Kes::IView* parent);
    /// The first step of the first `open`, before everything else. Default: nothing.
    virtual void _onBeforeInit();
    /// The window exists but is not shown yet: the program adds its menus, toolbars and content. Default:
    /// nothing.
    virtual void _onInit();
    /// A run has ended; `outputStarted` as in `ProgramModel::signalFinished`. Default: nothing.
    virtual void _onFinishedFromModel(bool outputStarted);
    /// The user has confirmed new hardware settings. Default: the model uses them.
    virtual void _onHardwareChanging(std::unique_ptr<KesDevice::HardwareManager>& hardware);
    /// Decides about a request to close; an override calls the base. Default: asks about a running test,
    /// stops it, then calls `_saveOnClosing`.
    virtual void _onClosing();
    /// Makes the status bar, owned by the caller; null: the window has none. Default: the bar of the family.
    virtual std::unique_ptr<Kes::IPresenter> _createStatusBar();

    /// Reads the configuration file. A failure is only a warning in the log.
    virtual void _loadXmlConfig();
    /// Writes the configuration file and makes its folder when needed; recent files that other instances have
    /// written meanwhile are kept. Does nothing when there is no user. Throws `ConfigurationError` when it
    /// fails (see `tellCurrentException`); the former file is then kept beside it, and the next start reads
    /// that one if the new one is damaged.
    virtual void _saveXmlConfig();
    /// Reads recent files and window rectangle from the file's root element. An override calls the base.
    virtual void _extractXmlConfig(xmlpp::Element* root);
    /// Writes recent files and window rectangle into the file's root element. An override calls the base.
    virtual void _fillXmlConfig(xmlpp::Element* root);
    /// The name of that file. Default: the short name of the model's class and ".cfg"; empty without a model.
    virtual std::string _getXmlConfigName();
    /// Its path. Default: in the family's cache folder. When a program of another executable has a model
    /// class of the same name and was the first to write the file, this one reads and writes
    /// "<name>.<executable>.cfg" beside it. Executables of the same file name are one program, wherever they
    /// lie. Recovery copies have the executable's name in their folder from the first start.
    virtual std::string _getXmlConfigFullPath();

    /// Null before the first `open`.
    IProgramView* _getProgramView();
    /// Null before the first `open`.
    ProgramMainMenuPresenter* _getMenuBar();

    /// Builds everything once; further calls do nothing.
    void _init();
    /// Applies the window rectangle of the configuration file again, if there was one.
    void _onFinalizeInit();

    /// Lets the user save the archive, writes the configuration file and closes the model. Returns early when
    /// the user cancels. Nothing once the model has been closed.
    void _saveOnClosing();

    /// Any thread: shows a text, at once on the GUI thread unless another message is open.
    void _onMessageFromModel(const std::string& text);
    void _onUnloadingFromModel();
    void _onClosedFromModel();
    /// Always true: the window does not close by itself.
    bool _onClosingFromView();

private:
    struct ImplFields;

    void _runArchive(const std::function<void(ArchiveManagerPresenter&)>& command);
    void _build();
    void _connectModel(ProgramModel& model);
    void _createWindow();
    /// Any thread: runs a handler of a model signal on the GUI thread; at once when called there. Its
    /// exceptions leave the main loop, not the emission.
    void _fromModel(std::function<void()> handler);
    void _showMessages();
    bool _stopOnRequest(ProgramModel& model);
    void _waitForStop(ProgramModel& model);
    void _onRunningChangedOnClosing();
    void _closeModel();
    template <typename Window>
    void _closeSafely(Window* window);
    void _onTestObjectClosed();
    void _createRecovery();
    void _offerLostWork();
    bool _openLostWork(LostWork& work);
    void _replaceBy(LostWork& work);
    void _mergeRecentFiles(const ConfigurationFile& file);

    std::unique_ptr<ImplFields> _fields;
};

} // namespace KesProgram
