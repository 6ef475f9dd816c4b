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
#include <KesProgram/shell/detail/StandstillGuard.h>
#include <KesProgram/views/IProgramView.h>

#include <atomic>
#include <exception>
#include <optional>

namespace KesProgram {

/// How far the program has got with being closed.
enum class ClosingPhase {
    Open,
    /// A request waits for a dialog to be closed.
    Waiting,
    /// The program's own `_onClosing` is deciding.
    Deciding,
    /// The question about the running test is open, or the test is being stopped.
    Asking,
    /// The archive question is open, or the configuration is being written.
    Saving,
    /// The model has been closed; for ever.
    Closed
};

/// A phase for a scope; leaves alone what has come after it.
class ClosingScope {
public:
    ClosingScope(ClosingPhase& phase, ClosingPhase during) : _phase(phase), _before(phase), _during(during)
    {
        _phase = during;
    }
    ~ClosingScope()
    {
        if (_phase == _during)
            _phase = _before;
    }
    ClosingScope(const ClosingScope&) = delete;
    ClosingScope& operator=(const ClosingScope&) = delete;

private:
    ClosingPhase& _phase;
    const ClosingPhase _before;
    const ClosingPhase _during;
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

    /// What the first `open` has thrown: half a window cannot be shown.
    std::exception_ptr openFailure;
    /// Why the configuration could not be written when the program was to close.
    std::exception_ptr configurationFailure;
    ClosingPhase closing = ClosingPhase::Open;
    /// The user wants the program closed when the test, which has been asked to stop, has stopped.
    bool isStopAwaited = false;
    /// The runs since the one whose end was waited for first, and the one whose end needs nothing more.
    std::atomic<unsigned> runs{0};
    std::optional<unsigned> savedRun;
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
    std::optional<StandstillGuard> standstillGuard;
};

} // namespace KesProgram
