#include <KesProgram/shell/ProgramMain.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/Log.h>
#include <KesCommonView/ApplicationDispatcher.h>
#include <KesCommonView/DialogPresenter.h>
#include <KesCommonView/EarlyLoading.h>
#include <KesProgram/model/ProgramModel.h>
#include <KesProgram/shell/ConfigurationError.h>
#include <KesProgram/shell/ProgramBasePresenter.h>
#include <KesProgram/text/TextPair.h>

#include <glib-unix.h>
#include <glibmm/exceptionhandler.h>
#include <glibmm/main.h>
#include <glibmm/miscutils.h>
#include <gtk/gtk.h>
#include <gtkmm/main.h>

#include <array>
#include <clocale>
#include <csignal>
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
        for (std::size_t i = 0; i < _signalSources.size(); ++i)
            _signalSources[i] =
                g_unix_signal_add(i == 0 ? SIGINT : SIGTERM, &RunningProgram::_onUnixSignal, this);
    }
    ~RunningProgram()
    {
        for (const auto source : _signalSources)
            g_source_remove(source);
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
        auto& presenter = *_parts.presenter;
        Glib::set_application_name(_parts.model->getProgramName());
        presenter.setPackageVersion(version);
        presenter.signalClosed.connect([this] { _loop->quit(); });
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

    static gboolean _onUnixSignal(gpointer program)
    {
        auto& self = *static_cast<RunningProgram*>(program);
        self._later([&self] { self._terminate(); });
        return G_SOURCE_CONTINUE;
    }
    void _terminate()
    {
        if (_unattended && !_unattended->isDone())
            _unattended->terminate();
        else
            _parts.presenter->requestClose();
    }

    /// Called inside a catch block.
    void _onException()
    {
        try {
            throw;
        } catch (const ConfigurationError& error) {
            _show(error.what());
            if (_unattended)
                _unattended->reportFileError();
            if (!std::exchange(_isModelClosed, true))
                _parts.model->close();
        } catch (...) {
            _show(Kes::getCurrentExceptionText());
        }
    }
    void _show(const std::string& text)
    {
        KesLog::Log::writeError(text);
        _parts.presenter->runDialogs([&] {
            Kes::DialogPresenter::show(_parts.presenter->getView(), text, _parts.model->getProgramName(),
                                       Kes::DialogResult::Ok);
        });
    }

    const CommandLine _commandLine;
    ProgramMain::Parts _parts;
    Glib::RefPtr<Glib::MainLoop> _loop;
    std::unique_ptr<UnattendedRun> _unattended;
    sigc::connection _handlerConnection;
    std::array<guint, 2> _signalSources{};
    bool _isModelClosed = false;
};

} // namespace

int ProgramMain::run(int argc, char** argv, const std::function<std::string()>& summary,
                     const std::string& version, const Create& create)
{
    static constexpr lng::TextPair noDisplay{"The program needs a display and finds none.",
                                             "Программе нужен дисплей, но он не найден."};
    const auto parsed = CommandLine::parse(argc, argv, summary);
    if (const auto* error = std::get_if<std::string>(&parsed)) {
        tell(*error);
        return UnattendedRun::NotStarted;
    }
    const auto& commandLine = std::get<CommandLine>(parsed);
    if (commandLine.version) {
        std::printf("%s\n", version.c_str());
        return UnattendedRun::Success;
    }
    // GTK would set the locale while the early loading reads it.
    std::setlocale(LC_ALL, "");
    gtk_disable_setlocale();
    const Kes::EarlyLoading earlyLoading;
    if (!initialiseGtk()) {
        tell(lng::choose(noDisplay));
        return UnattendedRun::NotStarted;
    }
    try {
        return RunningProgram(commandLine, create(commandLine)).run(version);
    } catch (...) {
        tell(Kes::getCurrentExceptionText());
    }
    return UnattendedRun::NotStarted;
}

} // namespace KesProgram
