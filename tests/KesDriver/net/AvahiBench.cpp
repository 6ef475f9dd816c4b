#include "AvahiBench.h"

#include "support/TemporaryHome.h"

#include <glibmm.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace KesTest {

namespace {

constexpr const char* busConfig =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
    "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <listen>unix:path=%FOLDER%/bus</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/><allow own="*"/>
    <allow send_type="method_call"/><allow send_type="signal"/>
    <allow send_destination="*"/><allow receive_sender="*"/>
  </policy>
</busconfig>
)";

constexpr const char* avahiConfig = R"([server]
host-name=kes-test
use-ipv6=no
allow-interfaces=lo
enable-dbus=yes
[wide-area]
enable-wide-area=no
[publish]
publish-hinfo=no
publish-workstation=no
publish-addresses=no
)";

std::string inFolder(std::string text, const std::string& folder)
{
    constexpr const char* place = "%FOLDER%";
    return text.replace(text.find(place), std::string(place).size(), folder);
}

} // namespace

AvahiBench::AvahiBench()
{
    std::string folder = Glib::build_filename(Glib::get_tmp_dir(), "kes-avahi.XXXXXX");
    _folder = mkdtemp(folder.data());
    writeFile(_folder + "/bus.conf", inFolder(busConfig, _folder));
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
    if (_bus == 0) {
        _bus =
            _spawn({"dbus-daemon", "--nofork", "--print-address", "--config-file=" + _folder + "/bus.conf"},
                   "bus.log");
        if (!_waitFor(_bus, "bus.log", "unix:"))
            return _read("bus.log");
    }
    if (_avahi == 0) {
        // It keeps its number and its socket below /run, where another one's may be; and on a loopback of its
        // own it hears nothing of another one's services.
        _avahi =
            _spawn({"unshare", "--mount", "--net", "sh", "-c",
                    "ip link set lo up && mount -t tmpfs none /run && exec avahi-daemon --no-drop-root --no-chroot --no-rlimits "
                    "-f " +
                        _folder + "/avahi.conf"},
                   "avahi.log");
        if (!_waitFor(_avahi, "avahi.log", "Server startup complete"))
            return _read("avahi.log");
    }
    return {};
}

void AvahiBench::stop()
{
    _end(_avahi);
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
    const std::unique_ptr<FILE, decltype(&pclose)> output(
        popen("timeout 20 avahi-browse --resolve --terminate --parsable _scpi-raw._tcp 2>&1", "r"), &pclose);
    std::string text;
    std::array<char, 4096> part;
    while (const auto count = fread(part.data(), 1, part.size(), output.get()))
        text.append(part.data(), count);
    return text;
}

std::string AvahiBench::_read(const std::string& log) const
{
    return readFile(_folder + '/' + log);
}

pid_t AvahiBench::_spawn(const std::vector<std::string>& command, const std::string& log) const
{
    writeFile(_folder + '/' + log, "");
    std::string line = "exec";
    for (const auto& word : command)
        line += ' ' + Glib::shell_quote(word);
    const std::vector<std::string> shell{"sh", "-c", line + " >>" + _folder + '/' + log + " 2>&1"};
    Glib::Pid program = 0;
    Glib::spawn_async("", shell, Glib::SPAWN_SEARCH_PATH | Glib::SPAWN_DO_NOT_REAP_CHILD,
                      Glib::SlotSpawnChildSetup(), &program);
    return program;
}

bool AvahiBench::_waitFor(pid_t& program, const std::string& log, const std::string& text) const
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (_read(log).find(text) == std::string::npos) {
        if (waitpid(program, nullptr, WNOHANG) != 0)
            program = 0;
        else if (std::chrono::steady_clock::now() > end)
            _end(program);
        if (program == 0)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
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
