#include "AvahiBench.h"

#include "support/TemporaryHome.h"

#include <glibmm.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace KesTest {

namespace {

constexpr const char* avahiConfig = R"([server]
host-name=kes-test
use-ipv6=no
allow-interfaces=lo
[wide-area]
enable-wide-area=no
[publish]
publish-hinfo=no
publish-workstation=no
publish-addresses=no
)";

} // namespace

AvahiBench::AvahiBench()
{
    std::string folder = Glib::build_filename(Glib::get_tmp_dir(), "kes-avahi.XXXXXX");
    _folder = mkdtemp(folder.data());
    writeFile(_folder + "/avahi.conf", avahiConfig);
    setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + _folder + "/bus").c_str(), 1);
}

AvahiBench::~AvahiBench()
{
    stopWithBus();
    std::filesystem::remove_all(_folder);
}

std::string AvahiBench::start()
{
    if (geteuid() != 0)
        return "only root can run an Avahi service of its own";
    for (const char* program : {"dbus-daemon", "avahi-daemon", "avahi-browse", "unshare", "ip"})
        if (Glib::find_program_in_path(program).empty())
            return std::string(program) + " is not installed";
    // The rules of a session's bus let everybody own and send everything.
    auto failure = _start(
        _bus, "dbus-daemon --session --nofork --print-address --address=$DBUS_SYSTEM_BUS_ADDRESS", "unix:");
    // The service keeps its number and its socket below /run, where another one's may be; and on a loopback
    // of its own it hears nothing of another one's services.
    if (failure.empty())
        failure = _start(_avahi,
                         "unshare --mount --net sh -c 'ip link set lo up && mount -t tmpfs none /run && exec "
                         "avahi-daemon --no-drop-root --no-chroot --no-rlimits -f " +
                             _folder + "/avahi.conf'",
                         "Server startup complete");
    return failure;
}

void AvahiBench::stopWithBus()
{
    stop();
    _end(_bus);
}

void AvahiBench::freeze(Part part) const
{
    kill(part == Part::Service ? _avahi : _bus, SIGSTOP);
}

void AvahiBench::thaw(Part part) const
{
    kill(part == Part::Service ? _avahi : _bus, SIGCONT);
}

std::string AvahiBench::browse()
{
    std::string output;
    Glib::spawn_command_line_sync("timeout 20 avahi-browse --resolve --terminate --parsable _scpi-raw._tcp",
                                  &output);
    return output;
}

std::string AvahiBench::_start(pid_t& program, const std::string& command, const std::string& text) const
{
    if (program != 0)
        return {};
    const auto log = _folder + "/log";
    Glib::spawn_async("", std::vector<std::string>{"sh", "-c", "exec " + command + " >" + log + " 2>&1"},
                      Glib::SPAWN_SEARCH_PATH | Glib::SPAWN_DO_NOT_REAP_CHILD, Glib::SlotSpawnChildSetup(),
                      &program);
    for (int tries = 0; tries < 500; ++tries) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        if (readFile(log).find(text) != std::string::npos)
            return {};
    }
    _end(program);
    return command + ": " + readFile(log);
}

void AvahiBench::_end(pid_t& program)
{
    if (program != 0) {
        kill(program, SIGTERM);
        waitpid(program, nullptr, 0);
    }
    program = 0;
}

} // namespace KesTest
