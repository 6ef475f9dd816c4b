#include <KesProgram/shell/ProgramMain.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/Text.h>
#include <KesCommonView/ApplicationDispatcher.h>
#include <KesDevice/HardwareControl.h>
#include <KesProgram/model/ProgramModel.h>
#include <KesProgram/shell/ProgramBasePresenter.h>
#include <KesProgram/shell/detail/ProgramEnding.h>

#include <glibmm/exceptionhandler.h>
#include <glibmm/main.h>
#include <glibmm/miscutils.h>
#include <gtk/gtk.h>
#include <gtkmm/main.h>

#include <cstdio>

namespace KesProgram {

namespace {

void tell(const std::string& text)
{
    std::fprintf(stderr, "%s\n", text.c_str());
}

bool initialiseGtk()
{
    if (!gtk_init_check(nullptr, nullptr))
        return false;
    Gtk::Main::init_gtkmm_internals();
    return true;
}

/// For this process only.
void useDevices(const std::vector<KesDriver::NetAddress>& addresses)
{
    if (addresses.empty())
        return;
    auto hardware = KesDevice::HardwareManager::create();
    for (const auto& address : addresses)
        (void)hardware->addKesto(address);
    KesDevice::HardwareControl::setGlobalInstance(std::move(hardware), true);
}

/// The program while its main loop runs.
class RunningProgram : public sigc::trackable {
public:
    RunningProgram(const CommandLine& commandLine, ProgramMain::Parts parts)
        : _commandLine(commandLine), _parts(std::move(parts)), _loop(Glib::MainLoop::create())
    {
        if (commandLine.isUnattended())
            _unattended = std::make_unique<UnattendedRun>(commandLine, *_parts.model, *_parts.presenter,
                                                          _parts.writeReport);
        _handlerConnection = Glib::add_exception_handler(sigc::mem_fun(*this, &RunningProgram::_onException));
        _ending = std::make_unique<ProgramEnding>(*_parts.model, *_parts.presenter, _unattended.get());
    }
    ~RunningProgram()
    {
        _ending.reset();
        _handlerConnection.disconnect();
        _unattended.reset();
        _parts.presenter.reset();
        _parts.model.reset();
        Kes::ApplicationDispatcherPresenter::getInstance().unregisterDispatcher();
    }
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    int run(const std::string& version)
    {
        static constexpr lng::Text noArchive{"Unattended.noArchive", "This program keeps no archives.",
                                             "Эта программа не работает с архивами."};
        if (!(_commandLine.file + _commandLine.save).empty() && !_parts.model->hasArchiveLogic()) {
            tell(noArchive.get());
            return UnattendedRun::NotStarted;
        }
        auto& presenter = *_parts.presenter;
        Glib::set_application_name(_parts.model->getProgramName());
        presenter.setPackageVersion(version);
        // In front of all others: one that throws does not keep the program from ending.
        presenter.signalClosed.slots().push_front([this] { _loop->quit(); });
        if (_unattended)
            presenter.setAttendance(_commandLine.quit ? ProgramBasePresenter::Attendance::Never
                                                      : ProgramBasePresenter::Attendance::Later);
        presenter.open(nullptr);
        if (_unattended)
            _unattended->begin();
        else if (!_commandLine.file.empty())
            _later([this] { _parts.presenter->openFile(_commandLine.file); });
        _loop->run();
        return _unattended ? _unattended->getStatus() : UnattendedRun::Success;
    }

private:
    /// From the main loop: what throws there is caught at the top.
    void _later(std::function<void()> function)
    {
        Glib::signal_idle().connect_once(sigc::track_obj(std::move(function), *this), Glib::PRIORITY_LOW);
    }

    /// Called inside a catch block.
    void _onException()
    {
        if (_unattended)
            _unattended->reportFailure();
        _parts.presenter->tellCurrentException();
    }

    const CommandLine _commandLine;
    ProgramMain::Parts _parts;
    Glib::RefPtr<Glib::MainLoop> _loop;
    std::unique_ptr<UnattendedRun> _unattended;
    std::unique_ptr<ProgramEnding> _ending;
    sigc::connection _handlerConnection;
};

} // namespace

int ProgramMain::run(int argc, char** argv, const std::function<std::string()>& summary,
                     const std::string& version, const Create& create)
{
    return run(argc, argv, summary, version, create, CommandLine::Abilities());
}

int ProgramMain::run(int argc, char** argv, const std::function<std::string()>& summary,
                     const std::string& version, const Create& create,
                     const CommandLine::Abilities& abilities)
{
    static constexpr lng::Text noDisplay{"Unattended.noDisplay",
                                         "The program needs a display and finds none.",
                                         "Программе нужен дисплей, но он не найден."};
    const auto parsed = CommandLine::parse(argc, argv, summary, abilities);
    if (const auto* error = std::get_if<std::string>(&parsed)) {
        tell(*error);
        return UnattendedRun::NotStarted;
    }
    const auto& commandLine = std::get<CommandLine>(parsed);
    if (commandLine.version) {
        std::printf("%s\n", version.c_str());
        return UnattendedRun::Success;
    }
    if (!initialiseGtk()) {
        tell(noDisplay.get());
        return UnattendedRun::NotStarted;
    }
    try {
        useDevices(commandLine.devices);
        return RunningProgram(commandLine, create(commandLine)).run(version);
    } catch (...) {
        tell(Kes::getCurrentExceptionText());
    }
    return UnattendedRun::NotStarted;
}

} // namespace KesProgram
