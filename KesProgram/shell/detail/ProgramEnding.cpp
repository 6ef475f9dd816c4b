#include <KesProgram/shell/detail/ProgramEnding.h>

#include <KesCommon/Log.h>
#include <KesCommonView/DialogBackend.h>
#include <KesCommonView/DisplayLoss.h>
#include <KesCommonView/GtkDialogs.h>
#include <KesCommonView/OpenDialogs.h>
#include <KesProgram/model/ProgramModel.h>
#include <KesProgram/shell/ProgramBasePresenter.h>
#include <KesProgram/shell/UnattendedRun.h>

#include <glibmm/main.h>

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <system_error>
#include <thread>
#include <utility>

namespace KesProgram {

using namespace std::chrono_literals;

namespace {

constexpr unsigned patience = 10;
/// A device that does not obey switches itself off in this time.
constexpr auto switchOffTime = 3s;
/// A disk that does not answer must not keep the question from the user.
constexpr auto copyTime = 1s;

/// The dialogs in use until now, and a word of each answer.
class AnsweredDialogs : public Kes::DialogBackend {
public:
    /// For its life they are the ones in use.
    class Scope {
    public:
        explicit Scope(const std::function<void()>& onAnswer)
        {
            auto dialogs = std::make_unique<AnsweredDialogs>(onAnswer);
            _dialogs = dialogs.get();
            _dialogs->_former = install(std::move(dialogs));
        }
        ~Scope()
        {
            auto former = std::move(_dialogs->_former);
            install(std::move(former));
        }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        AnsweredDialogs* _dialogs;
    };

    explicit AnsweredDialogs(std::function<void()> onAnswer) : _onAnswer(std::move(onAnswer)) {}

    Kes::DialogResult showMessage(const Kes::MessageRequest& request) override
    {
        const auto answer = _get().showMessage(request);
        _onAnswer();
        return answer;
    }
    std::string chooseFile(const Kes::FileRequest& request) override { return _get().chooseFile(request); }

private:
    Kes::DialogBackend& _get() { return _former ? *_former : _boxes; }

    const std::function<void()> _onAnswer;
    std::unique_ptr<Kes::DialogBackend> _former;
    Kes::GtkDialogs _boxes;
};

} // namespace

ProgramEnding::ProgramEnding(ProgramModel& model, ProgramBasePresenter& presenter, UnattendedRun* unattended)
    : _model(model), _presenter(presenter), _unattended(unattended), _requests([this] { _request(); })
{
    Kes::DisplayLoss::setHandler([this] { _endWithoutDisplay(); });
}

ProgramEnding::~ProgramEnding()
{
    Kes::DisplayLoss::setHandler(nullptr);
    _patience.disconnect();
    alarm(0);
}

void ProgramEnding::_request()
{
    if (_stage != Stage::NotAsked) {
        _force();
        return;
    }
    _stage = Stage::Asked;
    _model.switchOffAtOnce();
    _presenter.writeRecoveryCopy(copyTime);
    if (_unattended && !_unattended->isDone()) {
        _unattended->terminate();
        return;
    }
    _patience =
        Glib::signal_timeout().connect_seconds(sigc::mem_fun(*this, &ProgramEnding::_force), patience);
    // Not from the source that brought the request: the next one would not be heard under a question.
    Glib::signal_idle().connect_once(sigc::mem_fun(*this, &ProgramEnding::_ask));
}

void ProgramEnding::_ask()
{
    {
        // Somebody is there: what follows, such as choosing a file, may take its time.
        const AnsweredDialogs::Scope dialogs([this] { _patience.disconnect(); });
        _presenter.requestClose();
    }
    if (_stage != Stage::Asked || _presenter.isClosing())
        return;
    // The user wants to continue.
    _patience.disconnect();
    _stage = Stage::NotAsked;
}

/// True, as a time-out, as long as it has not been carried out.
bool ProgramEnding::_force()
{
    if (_stage == Stage::Forced)
        return false;
    _stage = Stage::Forced;
    _patience.disconnect();
    // Whatever holds up the main loop from here on.
    alarm(patience);
    Kes::GtkDialogs::dismissAll();
    Glib::signal_timeout().connect(sigc::mem_fun(*this, &ProgramEnding::_closeWithoutQuestions), 20);
    return false;
}

/// From the main loop itself: the functions that have shown a dialog have to return before.
bool ProgramEnding::_closeWithoutQuestions()
{
    if (Kes::OpenDialogs::any()) {
        Kes::GtkDialogs::dismissAll();
        return true;
    }
    _presenter.closeWithoutQuestions();
    return false;
}

void ProgramEnding::_switchOffAndWait()
{
    // The listeners on this thread would touch the display.
    try {
        std::thread([this] { _model.switchOffAtOnce(); }).detach();
    } catch (const std::system_error&) {
        // The device's watchdog is left, and the files can still be written.
    }
    const auto end = std::chrono::steady_clock::now() + switchOffTime;
    auto* hardware = _model.getHardware();
    // The results of the run are whole at its end.
    while ((_model.isOutputStarted() || hardware->isOutputRunning()) &&
           std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(1ms);
}

/// Not by `exit`: other threads still use what that destroys.
void ProgramEnding::_endWithoutDisplay()
{
    auto status = UnattendedRun::Stopped;
    try {
        KesLog::Log::writeError("The connection to the display has been lost.");
        _switchOffAndWait();
        _presenter.writeRecoveryCopy(copyTime);
        if (_unattended && !_unattended->isDone())
            status = _unattended->endWithoutDisplay();
    } catch (...) {
    }
    std::_Exit(status);
}

} // namespace KesProgram
