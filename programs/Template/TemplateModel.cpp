#include "TemplateModel.h"

/// The start thread: the test belongs here. It looks at `isRunning()` and ends with exactly one `_finish()`.
void TemplateModel::_onStart()
{
    {
        std::unique_lock lock(_mutex);
        _stopped.wait(lock, [this] { return !isRunning(); });
    }
    _verdict = KesProgram::RunVerdict::Stopped;
    _finish();
}

/// Whichever thread stops the test; returns at once. Passing the lock makes sure that a test which has just
/// looked at `isRunning()` is already waiting.
void TemplateModel::_onStop()
{
    {
        std::lock_guard lock(_mutex);
    }
    _stopped.notify_all();
}
