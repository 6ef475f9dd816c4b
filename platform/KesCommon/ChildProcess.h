#pragma once

#include <KesCommon/Export.h>

#include <giomm/cancellable.h>

#include <chrono>
#include <string>
#include <vector>

namespace Kes {

/// Another program that does a piece of work and ends. No shell is involved, its standard input is empty, and
/// its standard output is dropped. Any thread.
class KES_EXPORT ChildProcess {
public:
    /// In which way it ended.
    enum class End {
        /// By itself.
        Exited,
        /// There is no such program.
        NotFound,
        /// The system did not start it.
        NotStarted,
        TimedOut,
        Cancelled
    };

    /// How it ended. A value.
    struct Outcome {
        End end = End::NotStarted;
        /// When it has exited: its status, or -1 when a signal ended it.
        int status = -1;
        /// What it wrote to standard error, or why it was not started; valid UTF-8.
        std::string errors;

        bool isSuccess() const { return end == End::Exited && status == 0; }
    };

    /// Runs a program, looked up in PATH, with its arguments and returns when it has ended. After the time
    /// limit, or when it is cancelled (on any thread), the program is killed. Any thread; it blocks.
    static Outcome run(const std::vector<std::string>& command, std::chrono::milliseconds limit,
                       const Glib::RefPtr<Gio::Cancellable>& cancellable = {});
};

} // namespace Kes
