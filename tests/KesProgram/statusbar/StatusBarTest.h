#pragma once

#include "support/DefaultHardware.h"
#include "support/GuiTest.h"
#include "support/TemporaryHome.h"

#include <KesProgram/model/ProgramModel.h>

#include <atomic>
#include <thread>

namespace KesTest {

/// A model that only has something to show.
class StatusModel : public KesProgram::ProgramModel {
public:
    std::string extension;
    bool isLocal = false;

    using ProgramModel::_setState;

    std::string getExtension() override { return extension; }
    std::unique_ptr<std::istream> getDataStream() override { return std::make_unique<std::stringstream>(); }
    bool usesLocalHardware() override { return isLocal; }
    KesProgram::RunVerdict getRunVerdict() override { return KesProgram::RunVerdict::None; }

protected:
    void _onStart() override { _finish(); }
};

/// A test with an empty global configuration.
class StatusBarTest : public GuiTest {
protected:
    StatusBarTest() { setHardware(makeHardware(0)); }

    /// A configuration with devices 10.0.0.1, 10.0.0.2, ... that nothing connects to.
    static std::unique_ptr<KesDevice::HardwareManager> makeHardware(unsigned devices)
    {
        auto hardware = KesDevice::HardwareManager::create();
        for (unsigned i = 1; i <= devices; ++i)
            addKesto(*hardware, i);
        return hardware;
    }

    static KesDevice::Kesto& addKesto(KesDevice::HardwareManager& hardware, unsigned number)
    {
        const KesDevice::Kesto::Address address({10, 0, 0, static_cast<std::uint8_t>(number)});
        EXPECT_TRUE(hardware.addKesto(address));
        return *hardware.getKestos().find(address);
    }

    static void setHardware(std::unique_ptr<KesDevice::HardwareManager> hardware)
    {
        KesDevice::HardwareControl::setGlobalInstance(std::move(hardware), true);
    }

    /// Runs the function on a thread of its own, with the main loop going on meanwhile.
    static void onAnotherThread(const std::function<void()>& function)
    {
        std::atomic<bool> isOver{false};
        std::thread thread([&] {
            function();
            isOver = true;
        });
        EXPECT_TRUE(waitFor([&] { return isOver.load(); }));
        thread.join();
    }

    TemporaryHome home;
};

} // namespace KesTest
