// Devices on the network over loopback: questions of a link against lines to a server that only sends them
// back, through the same streams; from a stop to outputs of zero, on the device's own clock; and the
// preparation of many devices against that of the slowest one.

#include <KesDevice/HardwareManager.h>
#include <KesDriver/net/TcpNetwork.h>
#include <KesDriver/simulated/serving/DeviceServer.h>

#include <gio/gio.h>

#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;
using namespace KesDriver;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr std::uint16_t port = 5029;
constexpr int questions = 5000;
/// Whether two threads that wait for each other share a processor changes from start to start, and with it
/// the time of a round trip.
constexpr int turns = 7;
constexpr int stops = 500;
constexpr unsigned deviceCount = 32;

struct Times {
    double perSecond = 0.0;
    double p50 = 0.0;
    double p99 = 0.0;
};

template <typename Action>
Times measure(int count, Action&& action)
{
    std::vector<double> times;
    const auto begin = Clock::now();
    for (int i = 0; i < count; ++i) {
        const auto before = Clock::now();
        action();
        times.push_back(Milliseconds(Clock::now() - before).count());
    }
    const std::chrono::duration<double> all = Clock::now() - begin;
    std::sort(times.begin(), times.end());
    return {count / all.count(), times[times.size() / 2], times[times.size() * 99 / 100]};
}

template <typename Object>
struct Unref {
    void operator()(Object* object) const { g_object_unref(object); }
};
template <typename Object>
using Ref = std::unique_ptr<Object, Unref<Object>>;

/// Sends each line back, on a thread of its own.
class Echo {
public:
    Echo() : _service(g_threaded_socket_service_new(4))
    {
        Ref<GInetAddress> address(g_inet_address_new_from_string("127.12.0.1"));
        Ref<GSocketAddress> where(g_inet_socket_address_new(address.get(), port));
        g_socket_listener_add_address(G_SOCKET_LISTENER(_service.get()), where.get(), G_SOCKET_TYPE_STREAM,
                                      G_SOCKET_PROTOCOL_TCP, nullptr, nullptr, nullptr);
        g_signal_connect(_service.get(), "run", G_CALLBACK(&Echo::_serve), nullptr);
        g_socket_service_start(_service.get());
        _thread = std::thread([this] { g_main_loop_run(_loop); });
    }
    ~Echo()
    {
        g_main_loop_quit(_loop);
        _thread.join();
        g_main_loop_unref(_loop);
    }
    Echo(const Echo&) = delete;
    Echo& operator=(const Echo&) = delete;

private:
    static gboolean _serve(GThreadedSocketService*, GSocketConnection* connection, GObject*, gpointer)
    {
        g_tcp_connection_set_graceful_disconnect(G_TCP_CONNECTION(connection), FALSE);
        g_socket_set_option(g_socket_connection_get_socket(connection), 6, 1, 1, nullptr); // TCP_NODELAY
        auto* in = g_io_stream_get_input_stream(G_IO_STREAM(connection));
        auto* out = g_io_stream_get_output_stream(G_IO_STREAM(connection));
        char block[4096];
        for (;;) {
            const auto size = g_input_stream_read(in, block, sizeof block, nullptr, nullptr);
            if (size <= 0 ||
                !g_output_stream_write_all(out, block, static_cast<gsize>(size), nullptr, nullptr, nullptr))
                return TRUE;
        }
    }

    Ref<GSocketService> _service;
    GMainLoop* const _loop = g_main_loop_new(nullptr, FALSE);
    std::thread _thread;
};

Times measureEcho()
{
    const Echo echo;
    Ref<GSocketClient> client(g_socket_client_new());
    Ref<GSocketConnection> connection(
        g_socket_client_connect_to_host(client.get(), "127.12.0.1", port, nullptr, nullptr));
    if (!connection)
        throw std::runtime_error("nobody sends lines back");
    g_socket_set_option(g_socket_connection_get_socket(connection.get()), 6, 1, 1, nullptr);
    auto* in = g_io_stream_get_input_stream(G_IO_STREAM(connection.get()));
    auto* out = g_io_stream_get_output_stream(G_IO_STREAM(connection.get()));
    const std::string line = "*CLS;:SYST:CLOC?;:SYST:ERR?;:SYST:ECHO? 12345\n";
    return measure(questions, [&] {
        g_output_stream_write_all(out, line.data(), line.size(), nullptr, nullptr, nullptr);
        char block[4096];
        for (std::size_t received = 0; received < line.size();)
            received += static_cast<std::size_t>(
                std::max<gssize>(0, g_input_stream_read(in, block, sizeof block, nullptr, nullptr)));
    });
}

NetAddress address(unsigned number)
{
    return NetAddress(NetAddress::Bytes{127, 12, 1, static_cast<std::uint8_t>(number + 1)});
}

/// A device and its server.
struct Served {
    explicit Served(unsigned number)
        : device(std::make_shared<SimulatedKesto>(KestoIdentifer(3, number + 1))), server(device)
    {
        if (!server.listen(address(number).to_string(), port))
            throw std::runtime_error("cannot listen at " + address(number).to_string());
    }
    std::shared_ptr<SimulatedKesto> device;
    DeviceServer server;
};

void mustWork(const Kes::Result& result)
{
    if (!result)
        throw std::runtime_error(result.getError() ? result.getError()->getMessage() : "refused");
}

/// Counts the sequences that have ended.
class EndCounter : public IReportReceiver {
public:
    void receive(ConnectionNumber, const Report& report) override
    {
        if (!std::holds_alternative<SequenceEvent>(report))
            return;
        std::lock_guard lock(_mutex);
        ++_ends;
        _changed.notify_all();
    }
    void await(int ends)
    {
        std::unique_lock lock(_mutex);
        if (!_changed.wait_for(lock, 5s, [&] { return _ends >= ends; }))
            throw std::runtime_error("a sequence does not end");
    }

private:
    std::mutex _mutex;
    std::condition_variable _changed;
    int _ends = 0;
};

Times measureStops(const Served& served, IKestoLink& link)
{
    OutputStep step;
    step.outputs.currents[0].magnitude = 1.0;
    step.duration = 1h;
    mustWork(link.startWorkingMode());
    std::vector<double> times;
    for (int i = 0; i < stops; ++i) {
        mustWork(link.runSequence({step}));
        std::this_thread::sleep_for(1ms);
        const auto begin = Clock::now();
        std::thread stopping([&] { (void)link.stopOutputs(); });
        while (served.device->getOutputs() != OutputState())
            std::this_thread::yield();
        times.push_back(Milliseconds(Clock::now() - begin).count());
        stopping.join();
    }
    std::sort(times.begin(), times.end());
    return {0.0, times[times.size() / 2], times[times.size() * 99 / 100]};
}

/// A stop at any moment while the longest sequence is being sent and started: what it takes until the device
/// has stopped, from the call to its answer.
Times measureStopsWhileSending(IKestoLink& link)
{
    constexpr int rounds = 400;
    constexpr auto apart = 150us;
    OutputStep step;
    for (auto& current : step.outputs.currents)
        current = {1.0 / 3.0, 100.0 / 7.0};
    step.ramp.currents[0].degrees = 1.0 / 7.0;
    step.endOn = InputCondition{1, true};
    step.duration = 1h;
    const OutputSequence sequence(10000, step);
    std::vector<double> times;
    const auto stop = [&] {
        const auto begin = Clock::now();
        mustWork(link.stopOutputs());
        times.push_back(Milliseconds(Clock::now() - begin).count());
    };
    for (int i = 0; i < rounds; ++i) {
        // One that has been stopped before its start is refused.
        std::thread sending([&] { (void)link.runSequence(sequence); });
        std::this_thread::sleep_for(i * apart);
        stop();
        sending.join();
        (void)link.stopOutputs();
    }
    std::sort(times.begin(), times.end());
    return {0.0, times[times.size() / 2], times[times.size() * 99 / 100]};
}

/// In bytes, over ten thousand runs, when the device remembers as many events as it can.
long measureGrowth(const Served& served, IKestoLink& link)
{
    constexpr int warmUp = 25000;
    constexpr int runs = 10000;
    served.device->setSpeed(10000.0);
    OutputStep step;
    step.duration = 1ms;
    const auto receiver = std::make_shared<EndCounter>();
    link.setReceiver(receiver);
    std::size_t before = 0;
    for (int i = 0; i < warmUp + runs; ++i) {
        if (i == warmUp)
            before = mallinfo2().uordblks;
        mustWork(link.runSequence({step, step}));
        receiver->await(i + 1);
    }
    served.device->setSpeed(1.0);
    return static_cast<long>(mallinfo2().uordblks) - static_cast<long>(before);
}

double timePreparation(unsigned count)
{
    auto hardware = KesDevice::HardwareManager::create(std::make_shared<TcpNetwork>(port));
    for (unsigned i = 0; i < count; ++i)
        mustWork(hardware->addKesto(address(i)));
    const auto begin = Clock::now();
    mustWork(hardware->prepare());
    return Milliseconds(Clock::now() - begin).count();
}

struct Compared {
    Times echo;
    Times asked;
    double perSecond = 0.0;
    double p99 = 0.0;
};

double getMedian(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

Times getMedian(const std::vector<Times>& times)
{
    const auto of = [&](double Times::*member) {
        std::vector<double> values;
        for (const auto& one : times)
            values.push_back(one.*member);
        return getMedian(values);
    };
    return {of(&Times::perSecond), of(&Times::p50), of(&Times::p99)};
}

/// The bare lines and the questions of a link by turns, each on a connection of its own.
Compared compare(IKestoLink& link)
{
    std::vector<Times> bare;
    std::vector<Times> asked;
    std::vector<double> perSecond;
    std::vector<double> p99;
    for (int i = 0; i < turns; ++i) {
        bare.push_back(measureEcho());
        ConnectionNumber number = 0;
        mustWork(link.connect(number));
        DeviceTime time;
        asked.push_back(measure(questions, [&] { mustWork(link.readTime(time)); }));
        link.disconnect();
        perSecond.push_back(asked.back().perSecond / bare.back().perSecond);
        p99.push_back(asked.back().p99 / bare.back().p99);
    }
    return {getMedian(bare), getMedian(asked), getMedian(perSecond), getMedian(p99)};
}

void print(const char* name, const Times& times)
{
    std::printf("%-34s %9.0f /s   p50 %7.3f ms   p99 %7.3f ms\n", name, times.perSecond, times.p50,
                times.p99);
}

} // namespace

int main()
try {
    std::vector<std::unique_ptr<Served>> devices;
    for (unsigned i = 0; i < deviceCount; ++i)
        devices.push_back(std::make_unique<Served>(i));
    const auto link = TcpNetwork(port).createLink(address(0));
    const auto compared = compare(*link);
    print("lines sent back", compared.echo);
    print("questions of a link", compared.asked);
    std::printf("commands per second               %9.2f of the bare ones (at least 0.5)\n",
                compared.perSecond);
    std::printf("round trip, p99                   %9.2f times the bare one (at most 2)\n", compared.p99);
    const double roundTrip = compared.asked.p50;
    ConnectionNumber number = 0;
    mustWork(link->connect(number));
    const auto stopped = measureStops(*devices.front(), *link);
    print("stop to outputs of zero", stopped);
    std::printf("stop above a round trip, p99      %9.2f ms (at most 5)\n", stopped.p99 - roundTrip);
    const auto behind = measureStopsWhileSending(*link);
    print("stop while 10 000 steps are sent", behind);
    std::printf("stop above a round trip, p99      %9.2f ms (at most 5)\n", behind.p99 - roundTrip);
    std::printf("heap after 10 000 more runs       %9ld bytes more\n",
                measureGrowth(*devices.front(), *link));
    link->disconnect();
    // The slowest one answers each question after 20 ms.
    devices.front()->device->setAnswerDelay(20ms);
    timePreparation(1);
    const double slowest = timePreparation(1);
    const double all = timePreparation(deviceCount);
    std::printf("preparing %u devices              %9.2f times the slowest one, %.0f ms (at most 1.5)\n",
                deviceCount, all / slowest, all);
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
