#include <KesProgram/recovery/detail/CopyWriter.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/Log.h>
#include <KesCommon/ObjectErrorHelper.h>

#include <system_error>
#include <utility>

namespace KesProgram {

CopyWriter::CopyWriter(RecoveryStore& store) : _store(store)
{
    try {
        _thread = Kes::Worker("KesProgram_Copy", [this] { _run(); });
        _hasThread = true;
    } catch (const std::system_error& error) {
        KesLog::Log::writeWarn(std::string("recovery copies hold up the window: ") + error.what());
    }
}

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
    _hand({std::move(snapshot), std::move(description)});
}

void CopyWriter::remove()
{
    _hand({});
}

void CopyWriter::_hand(Task task)
{
    if (!_hasThread) {
        _isGood = _write(std::move(task));
        return;
    }
    {
        std::lock_guard lock(_mutex);
        _waiting = std::move(task);
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
        if (task.snapshot.isEmpty()) {
            _store.remove(RecoveryStore::Kind::Work);
            return true;
        }
        task.copy.bytes = task.snapshot.pack();
        const auto result = _store.write(RecoveryStore::Kind::Work, task.copy);
        if (result)
            return true;
        reason = Kes::ObjectErrorHelper::toDisplayString({result.getError()});
    } catch (...) {
        reason = Kes::getCurrentExceptionText();
    }
    // A full disk is reported once, and tried again.
    if (_isGood)
        KesLog::Log::writeError("keeping a recovery copy: " + reason);
    return false;
}

} // namespace KesProgram
