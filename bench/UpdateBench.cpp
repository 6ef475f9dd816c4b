// The window while the state of 32 devices on the network is asked for ten times a second: frames that are
// drawn, against those without any asking.

#include <KesCommonView/ApplicationDispatcher.h>
#include <KesDevice/HardwareControl.h>
#include <KesDevice/KestoStateGlobalUpdater.h>
#include <KesDriver/net/TcpNetwork.h>
#include <KesDriver/simulated/serving/DeviceServer.h>
#include <KesProgram/model/ProgramModel.h>
#include <KesProgram/statusbar/StatusBarHardwarePresenter.h>

#include <gtkmm.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;
using namespace KesDriver;

constexpr std::uint16_t port = 5029;
constexpr unsigned deviceCount = 32;
constexpr auto length = 5s;

class BenchModel : public KesProgram::ProgramModel {
public:
    std::string getExtension() override { return {}; }
    KesProgram::RunVerdict getRunVerdict() override { return KesProgram::RunVerdict::None; }

protected:
    void _onStart() override { _finish(); }
};

NetAddress address(unsigned number)
{
    return NetAddress(NetAddress::Bytes{127, 12, 2, static_cast<std::uint8_t>(number + 1)});
}

/// Frames that the window draws meanwhile, when it is asked to draw one after the other.
int countFrames(Gtk::Window& window)
{
    int frames = 0;
    sigc::connection drawn = window.signal_draw().connect([&](const Cairo::RefPtr<Cairo::Context>&) {
        ++frames;
        return false;
    });
    const auto ticks = window.add_tick_callback([&](const Glib::RefPtr<Gdk::FrameClock>&) {
        window.queue_draw();
        return true;
    });
    const auto end = std::chrono::steady_clock::now() + length;
    sigc::connection wake = Glib::signal_timeout().connect([] { return true; }, 10);
    while (std::chrono::steady_clock::now() < end)
        Gtk::Main::iteration(true);
    wake.disconnect();
    window.remove_tick_callback(ticks);
    drawn.disconnect();
    return frames;
}

} // namespace

int main(int argc, char** argv)
{
    Gtk::Main gtk(argc, argv);
    Kes::ApplicationDispatcherPresenter::getInstance().registerDispatcher();
    std::atomic<unsigned> answers{0};
    std::vector<std::unique_ptr<DeviceServer>> servers;
    auto hardware = KesDevice::HardwareManager::create(std::make_shared<TcpNetwork>(port));
    for (unsigned i = 0; i < deviceCount; ++i) {
        const auto device = std::make_shared<SimulatedKesto>(KestoIdentifer(3, i + 1));
        servers.push_back(std::make_unique<DeviceServer>(device, [&](const std::string& line) {
            answers += line.find("SYST:STAT?") != std::string::npos;
        }));
        if (!servers.back()->listen(address(i).to_string(), port) || !hardware->addKesto(address(i))) {
            std::fprintf(stderr, "cannot serve %s\n", address(i).to_string().c_str());
            return 1;
        }
    }
    KesDevice::HardwareControl::setGlobalInstance(std::move(hardware), true);
    BenchModel model;
    model.init();
    KesProgram::StatusBarHardwarePresenter presenter(model);
    Gtk::Window window;
    window.add(dynamic_cast<Gtk::Widget&>(*presenter.getView()));
    window.show_all();
    auto& updater = KesDevice::KestoStateGlobalUpdater::getInstance();
    updater.setInterval(100ms);

    countFrames(window);
    const int bare = countFrames(window);
    updater.setUpdating(true);
    // The first time they are connected.
    countFrames(window);
    answers = 0;
    const int asked = countFrames(window);
    const double perSecond =
        static_cast<double>(answers) / deviceCount / std::chrono::seconds(length).count();
    updater.setUpdating(false);
    std::printf("frames without asking   %5d\nframes while asking     %5d, %.1f %% (at least 95)\n", bare,
                asked, 100.0 * asked / bare);
    std::printf("states of each device   %5.1f a second\n", perSecond);
    KesDevice::HardwareControl::setGlobalInstance(KesDevice::HardwareManager::create(), true);
    KesDevice::HardwareControl::waitForRetired();
    return 0;
}
