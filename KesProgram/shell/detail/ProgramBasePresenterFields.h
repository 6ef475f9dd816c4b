#pragma once

#include <KesCommon/Connection.h>
#include <KesCommon/RectangleF.h>
#include <KesCommonView/UpdateViewGuard.h>
#include <KesDevice/view/HardwareManagerPresenter.h>
#include <KesProgram/archive/ArchiveManagerPresenter.h>
#include <KesProgram/recovery/RecoveryKeeper.h>
#include <KesProgram/shell/ProgramBasePresenter.h>
#include <KesProgram/shell/ProgramMainMenuPresenter.h>
#include <KesProgram/shell/TestObjectWindowPresenter.h>
#include <KesProgram/shell/detail/MessageQueue.h>
#include <KesProgram/shell/detail/ModalDialogs.h>
#include <KesProgram/views/IProgramView.h>

namespace KesProgram {

/// How far a request to close has got; each is set while it lasts.
struct ClosingState {
    /// `requestClose` is on the stack.
    bool isDeciding = false;
    /// The question about the running test is open, or the test is being stopped.
    bool isAsking = false;
    /// The test has been asked to stop and still runs.
    bool isStopping = false;
    /// The archive question is open, or the configuration is being written.
    bool isSaving = false;
    /// The model has been closed; for ever.
    bool isClosed = false;
    /// A request waits for a dialog to be closed.
    bool isWaiting = false;

    bool isUnderWay() const { return isAsking || isStopping || isSaving || isClosed; }
};

/// Sets a flag for a scope.
class FlagScope {
public:
    explicit FlagScope(bool& flag) : _flag(flag) { _flag = true; }
    ~FlagScope() { _flag = false; }
    FlagScope(const FlagScope&) = delete;
    FlagScope& operator=(const FlagScope&) = delete;

private:
    bool& _flag;
};

struct ProgramBasePresenter::ImplFields : sigc::trackable {
    bool isInitialised = false;
    std::unique_ptr<IProgramView> view;
    std::unique_ptr<KesDevice::HardwareManagerPresenter> hardwareSettings;
    std::unique_ptr<TestObjectWindowPresenter> testObject;
    std::unique_ptr<ArchiveManagerPresenter> archive;
    /// After the model has been initialised; null without archive logic.
    std::unique_ptr<RecoveryKeeper> recovery;
    std::unique_ptr<ProgramMainMenuPresenter> menuBar;
    std::unique_ptr<Kes::IPresenter> statusBar;
    sigc::connection closingFromView;
    std::unique_ptr<Kes::RectangleF> savedRectangle;

    Attendance attendance = Attendance::User;
    /// The recent files as they were read.
    std::vector<std::string> loadedRecentFiles;

    ClosingState closing;
    ModalDialogs dialogs;
    MessageQueue messages;
    Kes::UpdateViewGuard guard;
    Kes::ScopedConnection finishedConnection;
    Kes::ScopedConnection closingConnection;
    Kes::ScopedConnection closedConnection;
    Kes::ScopedConnection messageConnection;
    Kes::ScopedConnection testObjectConnection;
    Kes::ScopedConnection recoveryConnection;
    /// Made by the first close request that has to wait for a test, and then left in place.
    Kes::ScopedConnection runningConnection;
};

} // namespace KesProgram
