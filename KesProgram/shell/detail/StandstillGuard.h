#pragma once

#include <KesCommonView/MainLoopWatch.h>

namespace KesProgram {

class ProgramModel;

/// Switches the outputs off when the window does not answer for three seconds while a test runs, because
/// nobody could stop it then, and a message informs the user when it answers again. The model outlives it.
/// GUI thread.
class StandstillGuard {
public:
    explicit StandstillGuard(ProgramModel& model);

private:
    Kes::MainLoopWatch _watch;
};

} // namespace KesProgram
