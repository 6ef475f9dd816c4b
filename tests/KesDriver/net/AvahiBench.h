#pragma once

#include <string>
#include <sys/types.h>

namespace KesTest {

/// An Avahi service of the test's own, on a system bus of its own, which knows nothing but the loopback
/// interface. From its making on the process uses that bus, so there is one for all tests. GUI or test
/// thread.
class AvahiBench {
public:
    AvahiBench();
    ~AvahiBench();
    AvahiBench(const AvahiBench&) = delete;
    AvahiBench& operator=(const AvahiBench&) = delete;

    /// Starts bus and service when they do not run; empty, or why this computer cannot run it.
    std::string start();
    void stop() { _end(_avahi); }
    void stopWithBus();
    /// The service, or the bus, stands still, and goes on.
    enum class Part { Service, Bus };
    void freeze(Part part = Part::Service) const;
    void thaw(Part part = Part::Service) const;

    /// What `avahi-browse` sees of the services of raw SCPI devices, each line a record.
    static std::string browse();

private:
    /// Runs the command until it has said the text; otherwise returns what it has said.
    std::string _start(pid_t& program, const std::string& command, const std::string& text) const;
    static void _end(pid_t& program);

    std::string _folder;
    pid_t _bus = 0;
    pid_t _avahi = 0;
};

} // namespace KesTest
