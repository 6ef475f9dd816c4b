#include <KesProgram/shell/detail/StandstillGuard.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/Log.h>
#include <KesCommon/StringHelper.h>
#include <KesCommon/Text.h>
#include <KesProgram/model/ProgramModel.h>

namespace KesProgram {

using namespace std::chrono_literals;

namespace {

constexpr auto longestStandstill = 3s;

/// The message waits in the queue of the GUI thread until the window answers.
void switchOff(ProgramModel& model)
{
    static constexpr lng::Text text{
        "Standstill.switchedOff",
        "The window did not answer for more than %s s during the test. The outputs were switched off.",
        "Окно не отвечало во время испытания более %s с. Выходы были отключены."};
    try {
        if (!model.isRunning())
            return;
        model.switchOffAtOnce();
        model.signalMessage.emit(
            Kes::StringHelper::format(text.get(), std::to_string(longestStandstill.count())));
    } catch (...) {
        KesLog::Log::writeError(Kes::getCurrentExceptionText());
    }
}

} // namespace

StandstillGuard::StandstillGuard(ProgramModel& model)
    : _watch(longestStandstill, [&model] { switchOff(model); })
{
    _watch.watch(true);
}

} // namespace KesProgram
