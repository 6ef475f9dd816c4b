#include <KesCommon/ChildProcess.h>

#include <gio/gio.h>
#include <glibmm/main.h>
#include <glibmm/utility.h>

#include <memory>

namespace Kes {

namespace {

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
};

using Subprocess = std::unique_ptr<GSubprocess, Unref>;
/// giomm's own class needs an initialisation that is not for any thread.
using Stop = std::unique_ptr<GCancellable, Unref>;

using End = ChildProcess::End;

std::string takeText(GError* error)
{
    const std::string text = error->message;
    g_error_free(error);
    return text;
}

Subprocess start(const std::vector<std::string>& command, ChildProcess::Outcome& outcome)
{
    std::vector<const char*> arguments;
    for (const auto& argument : command)
        arguments.push_back(argument.c_str());
    arguments.push_back(nullptr);
    GError* error = nullptr;
    Subprocess process(g_subprocess_newv(
        arguments.data(),
        GSubprocessFlags(G_SUBPROCESS_FLAGS_STDOUT_SILENCE | G_SUBPROCESS_FLAGS_STDERR_PIPE), &error));
    if (!process) {
        outcome.end =
            g_error_matches(error, G_SPAWN_ERROR, G_SPAWN_ERROR_NOENT) ? End::NotFound : End::NotStarted;
        outcome.errors = takeText(error);
    }
    return process;
}

/// A main context in which nothing but the wait for the program happens: what else the thread has to do is
/// not done inside.
class Wait {
public:
    Wait() { g_main_context_push_thread_default(_context->gobj()); }
    ~Wait() { g_main_context_pop_thread_default(_context->gobj()); }
    Wait(const Wait&) = delete;
    Wait& operator=(const Wait&) = delete;

    void run(GSubprocess* process, std::chrono::milliseconds limit,
             const Glib::RefPtr<Gio::Cancellable>& cancellable, ChildProcess::Outcome& outcome)
    {
        const auto timer = Glib::TimeoutSource::create(static_cast<unsigned>(limit.count()));
        timer->connect([this] {
            _isLate = true;
            g_cancellable_cancel(_stop.get());
            return false;
        });
        timer->attach(_context);
        // Called on the thread that cancels.
        const gulong connection =
            cancellable
                ? g_cancellable_connect(cancellable->gobj(), G_CALLBACK(&_onCancelled), _stop.get(), nullptr)
                : 0;
        g_subprocess_communicate_async(process, nullptr, _stop.get(), &_onEnd, this);
        while (!_isOver)
            _context->iteration(true);
        if (connection)
            g_cancellable_disconnect(cancellable->gobj(), connection);
        timer->destroy();
        outcome.errors = _errors;
        outcome.end = _isLate                                   ? End::TimedOut
                      : g_cancellable_is_cancelled(_stop.get()) ? End::Cancelled
                                                                : End::Exited;
    }

private:
    static void _onCancelled(GCancellable*, GCancellable* stop) { g_cancellable_cancel(stop); }

    static void _onEnd(GObject* process, GAsyncResult* result, void* data)
    {
        auto& self = *static_cast<Wait*>(data);
        GBytes* errors = nullptr;
        GError* failure = nullptr;
        g_subprocess_communicate_finish(G_SUBPROCESS(process), result, nullptr, &errors, &failure);
        if (failure)
            self._errors = takeText(failure);
        if (errors) {
            gsize size = 0;
            // No text at all is a null pointer.
            if (const auto* text = static_cast<const char*>(g_bytes_get_data(errors, &size)))
                self._errors = Glib::convert_return_gchar_ptr_to_stdstring(
                    g_utf8_make_valid(text, static_cast<gssize>(size)));
            g_bytes_unref(errors);
        }
        self._isOver = true;
    }

    const Glib::RefPtr<Glib::MainContext> _context = Glib::MainContext::create();
    const Stop _stop{g_cancellable_new()};
    bool _isLate = false;
    bool _isOver = false;
    std::string _errors;
};

} // namespace

ChildProcess::Outcome ChildProcess::run(const std::vector<std::string>& command,
                                        std::chrono::milliseconds limit,
                                        const Glib::RefPtr<Gio::Cancellable>& cancellable)
{
    Outcome outcome;
    const auto process = start(command, outcome);
    if (!process)
        return outcome;
    Wait().run(process.get(), limit, cancellable, outcome);
    if (outcome.end != End::Exited)
        g_subprocess_force_exit(process.get());
    g_subprocess_wait(process.get(), nullptr, nullptr);
    if (outcome.end == End::Exited && g_subprocess_get_if_exited(process.get()))
        outcome.status = g_subprocess_get_exit_status(process.get());
    return outcome;
}

} // namespace Kes
