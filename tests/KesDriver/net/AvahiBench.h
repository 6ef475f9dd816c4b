#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

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
    void stop();
    void stopWithBus();
    /// The service, or the bus, stands still, and goes on.
    enum class Part { Service, Bus };
    void freeze(Part part = Part::Service) const;
    void thaw(Part part = Part::Service) const;

    /// What `avahi-browse` sees of the services of raw SCPI devices, each line a record.
    static std::string browse();

private:
    std::string _read(const std::string& log) const;
    pid_t _spawn(const std::vector<std::string>& command, const std::string& log) const;
    /// Waits until the log holds the text; false when the program ends before.
    bool _waitFor(pid_t& program, const std::string& log, const std::string& text) const;
    static void _end(pid_t& program);

    std::string _folder;
    pid_t _bus = 0;
    pid_t _avahi = 0;
};

} // namespace KesTest
