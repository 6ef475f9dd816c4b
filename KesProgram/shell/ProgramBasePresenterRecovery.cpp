// Copies of the work that is not saved, and the work that an earlier end has left.

#include <KesCommon/Directories.h>
#include <KesCommon/StringHelper.h>
#include <KesCommon/TypeHelper.h>
#include <KesCommonView/DialogPresenter.h>
#include <KesCommonView/OpenDialogs.h>
#include <KesProgram/model/ProgramModel.h>
#include <KesProgram/shell/detail/NameOwner.h>
#include <KesProgram/shell/detail/ProgramBasePresenterFields.h>
#include <KesProgram/text/RecoveryLocalization.h>

#include <glibmm/datetime.h>
#include <glibmm/main.h>

#include <sstream>
#include <utility>

namespace KesProgram {

namespace Text = RecoveryLocalization;

namespace {

/// After everything that the start has queued, a file of the command line above all.
constexpr int afterTheStart = Glib::PRIORITY_LOW + 100;

std::string nameOf(const RecoveryCopy& copy, const std::string& extension)
{
    return copy.fileName.empty() ? "[New]." + extension : copy.fileName;
}

std::string localTime(std::int64_t time, const char* format)
{
    return Glib::DateTime::create_now_local(static_cast<gint64>(time)).format(format);
}

/// One for each program from its first start, whichever programs have a model class of the same name.
std::string recoveryFolder(const ProgramModel& model, const std::string& distinction)
{
    return Kes::getKesCrossAppStateDir() + Kes::TypeHelper::getShortTypeName(typeid(model)) + distinction +
           "/recovery/";
}

bool confirm(Kes::IView* parent, const std::string& question)
{
    return Kes::DialogPresenter::show(parent, question, Text::title(), Kes::DialogResult::YesNo) ==
           Kes::DialogResult::Yes;
}

} // namespace

void ProgramBasePresenter::setAttendance(Attendance attendance)
{
    _fields->attendance = attendance;
    if (_fields->recovery)
        _fields->recovery->setIsUnattended(attendance != Attendance::User);
}

void ProgramBasePresenter::_createRecovery()
{
    auto& model = *_getModel();
    if (!_fields->archive)
        return;
    _fields->recovery = std::make_unique<RecoveryKeeper>(
        *model.getArchiveManager(), getProgramName(), recoveryFolder(model, "." + NameOwner::getExecutable()),
        [&model] { return model.getDataSummary(); });
    _fields->recovery->setIsUnattended(_fields->attendance != Attendance::User);
    _fields->recoveryConnection = model.signalClosing.connect([this] { _fields->recovery->end(); });
    if (_fields->attendance != Attendance::User)
        return;
    const auto offer = [this] { _fields->dialogs.whenClosed([this] { _offerLostWork(); }); };
    Glib::signal_idle().connect_once(sigc::track_obj(offer, *this), afterTheStart);
}

bool ProgramBasePresenter::writeRecoveryCopy(std::chrono::milliseconds time) noexcept
{
    return !_fields->recovery || _fields->recovery->writeNow(time);
}

void ProgramBasePresenter::_offerLostWork()
{
    if (_fields->closing != ClosingPhase::Open || _getModel()->isRunning())
        return;
    auto& store = _fields->recovery->getStore();
    // Of versions that kept it by the model class alone.
    RecoveryStore former(recoveryFolder(*_getModel(), {}));
    store.takeOver(former, getProgramName());
    for (auto* each : {&store, &former})
        each->removeOutdated(std::chrono::system_clock::now());
    auto lost = store.findLost();
    runDialogs([&] {
        for (auto& work : lost)
            if (_openLostWork(work))
                return;
    });
}

/// True when the user wanted it, and is to be asked about no further one.
bool ProgramBasePresenter::_openLostWork(LostWork& work)
{
    const auto& copy = work.getCopy();
    const std::string name = nameOf(copy, _getModel()->getExtension());
    const auto question =
        Kes::StringHelper::format(Text::question(), name, localTime(copy.time, "%Y-%m-%d %H:%M"), copy.holds);
    if (confirm(getView(), question)) {
        _replaceBy(work);
        return true;
    }
    const std::int64_t lastDay =
        copy.time + std::chrono::duration_cast<std::chrono::seconds>(RecoveryStore::longestStay).count();
    if (confirm(getView(),
                Kes::StringHelper::format(Text::throwAway(), localTime(lastDay, "%Y-%m-%d"), name)))
        work.throwAway();
    return false;
}

void ProgramBasePresenter::_replaceBy(LostWork& work)
{
    auto& recovery = *_fields->recovery;
    auto& archive = *_fields->archive;
    // About a new document nobody is asked who has just started the program.
    if (recovery.hasUnsavedWork() && !archive.close())
        return;
    std::istringstream data(work.getCopy().bytes);
    if (archive.restore(data, work.getCopy().fileName, work.isFileNewer()))
        recovery.adopt(std::move(work));
}

} // namespace KesProgram
