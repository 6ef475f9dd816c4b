#pragma once

#include <KesCommon/Export.h>
#include <KesProgram/shell/CommandLine.h>
#include <KesProgram/shell/UnattendedRun.h>

#include <functional>
#include <memory>
#include <string>

namespace KesProgram {

class ProgramBasePresenter;
class ProgramModel;

/// What `main` of a program of the family does: command line, language, GTK, window, main loop, and an
/// orderly end. The thread that calls `run` becomes the GUI thread. docs/first-program.md shows a whole
/// `main`.
class KES_EXPORT ProgramMain {
public:
    /// What a program consists of.
    struct Parts {
        std::unique_ptr<ProgramModel> model;
        /// Destroyed before the model.
        std::unique_ptr<ProgramBasePresenter> presenter;
        /// For "--report"; see `UnattendedRun`. May be empty.
        UnattendedRun::WriteReport writeReport;
    };

    /// Makes model and presenter; GTK has been initialised, nothing has been shown.
    using Create = std::function<Parts(const CommandLine&)>;

    /// Runs the program to its end and returns its exit status: that of an unattended run, else 0; 2 when it
    /// could not start. `summary` is what the program does, in one line of the language of the process;
    /// `version` that of its package.
    ///
    /// The signals SIGHUP, SIGINT and SIGTERM and the end of the desktop's session switch all outputs off at
    /// once and then ask the program to close; an unattended run writes its files. After ten seconds without
    /// an answer, or at a second request, the program ends without asking. An exception that nothing has
    /// caught is shown to the user; see `ProgramBasePresenter::tellCurrentException`.
    static int run(int argc, char** argv, const std::function<std::string()>& summary,
                   const std::string& version, const Create& create);
    /// As above, for a program that cannot do everything that the command line offers: what it cannot do, as
    /// its model tells, is refused with a sentence and the status 2, and "--help" leaves out what `abilities`
    /// lacks.
    static int run(int argc, char** argv, const std::function<std::string()>& summary,
                   const std::string& version, const Create& create, const CommandLine::Abilities& abilities);
};

} // namespace KesProgram
