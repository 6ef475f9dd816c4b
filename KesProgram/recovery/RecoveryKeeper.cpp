#include <KesProgram/recovery/RecoveryKeeper.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/Log.h>
#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/StringHelper.h>
#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/recovery/detail/CopyWriter.h>
#include <KesProgram/text/RecoveryLocalization.h>

#include <glibmm/main.h>

#include <utility>

namespace KesProgram {

namespace {

using Kind = RecoveryStore::Kind;

/// In milliseconds.
constexpr unsigned betweenLooks = 1000;
constexpr std::chrono::seconds longestWrite{2};

std::int64_t now()
{
    return std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
}

/// Returns whether there is none.
bool logFailure(const Kes::Result& result)
{
    if (!result)
        KesLog::Log::writeError("keeping a recovery copy: " +
                                Kes::ObjectErrorHelper::toDisplayString({result.getError()}));
    return static_cast<bool>(result);
}

} // namespace

RecoveryKeeper::RecoveryKeeper(ArchiveManager& manager, std::string program, const std::string& folder,
                               Describe describe)
    : _manager(manager),
      _program(std::move(program)),
      _describeData(std::move(describe)),
      _store(folder),
      _writer(std::make_unique<CopyWriter>(_store))
{
    _manager.setWorkKeeper(this);
    try {
        _saved = _last = _manager.takeSnapshot();
    } catch (...) {
        // The next look finds out why, and counts the data as not saved.
        _saved.reset();
    }
    _timer = Glib::signal_timeout().connect(sigc::mem_fun(*this, &RecoveryKeeper::_onTick), betweenLooks);
}

RecoveryKeeper::~RecoveryKeeper()
{
    _timer.disconnect();
    _manager.setWorkKeeper(nullptr);
}

bool RecoveryKeeper::_onTick()
{
    try {
        _look();
        _hasFailed = false;
    } catch (...) {
        // Said once, not once a second.
        if (!std::exchange(_hasFailed, true))
            KesLog::Log::writeError("keeping a recovery copy: " + Kes::getCurrentExceptionText());
    }
    return true;
}

void RecoveryKeeper::_look()
{
    const auto snapshot = _manager.takeSnapshot();
    if (_fate == Fate::GivenUp && snapshot != _givenUp)
        _fate = Fate::Undecided;
    if (snapshot.isEmpty() || (snapshot == _last && _writer->isGood()))
        return;
    _last = snapshot;
    if (_saved && snapshot == *_saved)
        _writer->remove();
    else
        _writer->write(snapshot, _describe(_manager.getFileName()));
}

/// At once: the user has decided. May wait for a disk.
void RecoveryKeeper::_remove()
{
    _writer->cancel();
    _store.remove(Kind::Work);
}

RecoveryCopy RecoveryKeeper::_describe(const std::string& fileName) const
{
    namespace Text = RecoveryLocalization;
    const std::string data = _describeData ? _describeData() : std::string();
    return {_program,
            fileName,
            Kes::StringHelper::format(Text::notSaved(), data.empty() ? std::string(Text::changes()) : data),
            now(),
            {}};
}

bool RecoveryKeeper::writeNow(std::chrono::milliseconds time) noexcept
{
    try {
        if (!_isEnded && std::this_thread::get_id() == _guiThread)
            _look();
    } catch (...) {
        KesLog::Log::writeError("keeping a recovery copy: " + Kes::getCurrentExceptionText());
    }
    try {
        return _writer->waitFor(time);
    } catch (...) {
        return false;
    }
}

void RecoveryKeeper::end()
{
    if (_isEnded)
        return;
    // Unless the user has decided, what is not saved stays for the next start.
    writeNow(longestWrite);
    _timer.disconnect();
    _isEnded = true;
    if (_fate == Fate::GivenUp)
        _remove();
}

bool RecoveryKeeper::hasUnsavedWork() const
{
    return !_saved || _manager.takeSnapshot() != *_saved;
}

void RecoveryKeeper::adopt(LostWork work)
{
    _remove();
    _store.adopt(std::move(work));
    _saved.reset();
    if (const auto former = _store.read(Kind::Former))
        _brokenFile = former->fileName;
}

void RecoveryKeeper::onReplaced()
{
    if (_isEnded)
        return;
    _writer->cancel();
    if (_fate == Fate::Kept)
        _store.setAside(Kind::Work);
    else
        _store.remove(Kind::Work);
    if (_brokenFile)
        _store.setAside(Kind::Former);
    _brokenFile.reset();
    _hasSaveFailed = false;
    _fate = Fate::Undecided;
    _last = _manager.takeSnapshot();
    _saved = _last;
}

bool RecoveryKeeper::onSaving(const std::string& fileName, const std::string& former,
                              const DataSnapshot& snapshot, const std::string& present)
{
    _writer->cancel();
    const bool isFormerKept = _keepFormer(fileName, former);
    auto copy = _describe(fileName);
    copy.bytes = present;
    const bool isPresentKept = logFailure(_store.write(Kind::Work, copy));
    _saving = snapshot;
    return isFormerKept || isPresentKept;
}

/// Whether nothing that the file holds can be lost.
bool RecoveryKeeper::_keepFormer(const std::string& fileName, const std::string& bytes)
{
    // What the broken file holds now is of no use to anyone.
    if (_brokenFile == fileName)
        return true;
    if (_brokenFile)
        _store.setAside(Kind::Former);
    _brokenFile.reset();
    return bytes.empty() ||
           logFailure(_store.write(Kind::Former,
                                   {_program, fileName, RecoveryLocalization::formerFile(), now(), bytes}));
}

void RecoveryKeeper::onSaved(const std::string& fileName, SaveEnd end)
{
    _hasSaveFailed = end != SaveEnd::Whole;
    // The copy bears the name of a file that the document may not have got, or could not be written.
    _last = _hasSaveFailed ? DataSnapshot() : _saving;
    if (end == SaveEnd::Broken) {
        _brokenFile = fileName;
        _saved.reset();
        return;
    }
    if (end == SaveEnd::Whole) {
        _brokenFile.reset();
        _saved = _saving;
        _fate = Fate::Undecided;
    }
    if (!_brokenFile)
        _store.remove(Kind::Former);
    if (_saved && *_saved == _saving)
        _remove();
}

void RecoveryKeeper::onReleased(bool isUnsaved)
{
    if (isUnsaved || (_isUnattended && _hasSaveFailed && hasUnsavedWork())) {
        writeNow(longestWrite);
        _fate = Fate::Kept;
        return;
    }
    _fate = Fate::GivenUp;
    _givenUp = _manager.takeSnapshot();
    _remove();
    // When the document stays after all, it is written again.
    _last = DataSnapshot();
}

} // namespace KesProgram
