#include <KesProgram/recovery/detail/CopyWriter.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/Log.h>
#include <KesCommon/ObjectErrorHelper.h>

#include <utility>

namespace KesProgram {

CopyWriter::CopyWriter(RecoveryStore& store) : _store(store), _thread("KesProgram_Copy", [this] { _run(); })
{}

CopyWriter::~CopyWriter()
{
    {
        std::lock_guard lock(_mutex);
        _isEnding = true;
    }
    _changed.notify_all();
    _thread.wait();
}

void CopyWriter::write(DataSnapshot snapshot, RecoveryCopy description)
{
    {
        std::lock_guard lock(_mutex);
        _waiting = Task{std::move(snapshot), std::move(description)};
    }
    _changed.notify_all();
}

void CopyWriter::cancel()
{
    std::unique_lock lock(_mutex);
    _waiting.reset();
    _changed.wait(lock, [this] { return !_isWriting; });
}

bool CopyWriter::waitFor(std::chrono::milliseconds time)
{
    std::unique_lock lock(_mutex);
    return _changed.wait_for(lock, time, [this] { return !_waiting && !_isWriting; }) && _isGood;
}

void CopyWriter::_run()
{
    std::unique_lock lock(_mutex);
    for (;;) {
        _changed.wait(lock, [this] { return _waiting || _isEnding; });
        if (!_waiting)
            return;
        auto task = std::move(*_waiting);
        _waiting.reset();
        _isWriting = true;
        lock.unlock();
        const bool isGood = _write(std::move(task));
        lock.lock();
        _isWriting = false;
        _isGood = isGood;
        _changed.notify_all();
    }
}

bool CopyWriter::_write(Task task)
{
    std::string reason;
    try {
        task.copy.bytes = task.snapshot.pack();
        const auto result = _store.write(RecoveryStore::Kind::Work, task.copy);
        if (result)
            return true;
        reason = Kes::ObjectErrorHelper::toDisplayString({result.getError()});
    } catch (...) {
        reason = Kes::getCurrentExceptionText();
    }
    // A full disk is told of once, and tried again.
    if (_isGood)
        KesLog::Log::writeError("keeping a recovery copy: " + reason);
    return false;
}

} // namespace KesProgram
