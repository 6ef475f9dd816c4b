#pragma once

#include <KesProgram/shell/detail/EndRequests.h>

#include <sigc++/sigc++.h>

#include <functional>
#include <memory>
#include <string>

namespace KesProgram {

class ProgramBasePresenter;
class ProgramModel;
class UnattendedRun;

/// The end of a program that the system asks for (see `EndRequests`), or that the loss of its display leaves
/// it no time for: the outputs go off at once, the work is kept, and then the user is asked what a user who
/// closes the window is asked. When nobody answers for ten seconds, or the request comes a second time, the
/// program ends without asking.
///
/// Owned by what runs the main loop; model, presenter and unattended run outlive it. GUI thread.
class ProgramEnding : public sigc::trackable {
public:
    /// `unattended` may be null.
    ProgramEnding(ProgramModel& model, ProgramBasePresenter& presenter, UnattendedRun* unattended);
    ~ProgramEnding();

private:
    enum class Stage { NotAsked, Asked, Forced };

    void _request();
    void _ask();
    bool _force();
    bool _closeWithoutQuestions();
    [[noreturn]] void _endWithoutDisplay();
    void _switchOffAndWait();

    ProgramModel& _model;
    ProgramBasePresenter& _presenter;
    UnattendedRun* const _unattended;
    Stage _stage = Stage::NotAsked;
    sigc::connection _patience;
    const EndRequests _requests;
};

} // namespace KesProgram
