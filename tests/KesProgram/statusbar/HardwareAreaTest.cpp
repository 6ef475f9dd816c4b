#include "StatusBarTest.h"

#include <KesProgram/statusbar/StatusBarHardwarePresenter.h>
#include <KesProgram/views/StatusBarHardwareKestoStateView.h>
#include <KesProgram/views/StatusBarSyncView.h>

#include <gmock/gmock.h>
#include <gtkmm/window.h>

namespace KesTest {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class HardwareAreaTest : public StatusBarTest {
protected:
    HardwareAreaTest()
    {
        model.extension = "";
        model.init();
    }

    void show()
    {
        area = std::make_unique<KesProgram::StatusBarHardwarePresenter>(model);
        window.add(view());
        window.show_all();
    }

    Gtk::Widget& view() { return dynamic_cast<Gtk::Widget&>(*area->getView()); }

    std::vector<std::string> addresses()
    {
        std::vector<std::string> texts;
        for (auto* label : findWidgets<KesProgram::StatusBarHardwareKestoStateView>(view()))
            texts.push_back(label->get_text());
        return texts;
    }

    std::string syncName()
    {
        const auto buttons = findWidgets<KesProgram::StatusBarSyncView>(view());
        EXPECT_EQ(buttons.size(), 1U);
        return buttons.empty() ? "" : findWidgets<Gtk::Label>(*buttons[0]).back()->get_text();
    }

    StatusModel model;
    Gtk::Window window;
    std::unique_ptr<KesProgram::StatusBarHardwarePresenter> area;
};

TEST_F(HardwareAreaTest, ReplacedConfigurationIsBuiltAnew)
{
    show();
    EXPECT_THAT(addresses(), IsEmpty());
    EXPECT_EQ(syncName(), KesDevice::SyncMode::get(KesDevice::SyncModeKind::None).getShortName());
    setHardware(makeHardware(2));
    EXPECT_THAT(addresses(), ElementsAre("10.0.0.1", "10.0.0.2"));
    auto next = makeHardware(3);
    next->getSyncManager().setActiveMode(KesDevice::SyncModeKind::GPS);
    setHardware(std::move(next));
    EXPECT_THAT(addresses(), ElementsAre("10.0.0.1", "10.0.0.2", "10.0.0.3"));
    EXPECT_EQ(syncName(), KesDevice::SyncMode::get(KesDevice::SyncModeKind::GPS).getShortName());
    // On another thread the change is complete before the old configuration dies with its devices.
    onAnotherThread([&] { setHardware(makeHardware(1)); });
    EXPECT_THAT(addresses(), ElementsAre("10.0.0.1"));
    EXPECT_EQ(syncName(), KesDevice::SyncMode::get(KesDevice::SyncModeKind::None).getShortName());
}

TEST_F(HardwareAreaTest, LocalConfigurationOfTheProgramIsShown)
{
    setHardware(makeHardware(2));
    StatusModel local;
    local.isLocal = true;
    local.extension = "";
    local.init();
    KesProgram::StatusBarHardwarePresenter localArea(local);
    const auto rows = [&] {
        return findWidgets<KesProgram::StatusBarHardwareKestoStateView>(
                   dynamic_cast<Gtk::Widget&>(*localArea.getView()))
            .size();
    };
    EXPECT_EQ(rows(), 0U);
    addKesto(*local.getHardware(), 7);
    EXPECT_EQ(rows(), 1U);
    onAnotherThread([&] {
        auto next = makeHardware(0);
        local.setHardware(next, false);
    });
    EXPECT_EQ(rows(), 0U);
    addKesto(*local.getHardware(), 8);
    EXPECT_EQ(rows(), 1U);
}

TEST_F(HardwareAreaTest, DevicesComeAndGoOnAnotherThread)
{
    setHardware(makeHardware(1));
    show();
    auto& kestos = KesDevice::HardwareControl::getInstance()->getKestos();
    onAnotherThread([&] { addKesto(*KesDevice::HardwareControl::getInstance(), 2); });
    EXPECT_THAT(addresses(), ElementsAre("10.0.0.1", "10.0.0.2"));
    onAnotherThread([&] { EXPECT_TRUE(kestos.removeAt(0)); });
    EXPECT_THAT(addresses(), ElementsAre("10.0.0.2"));
    onAnotherThread([&] { EXPECT_TRUE(kestos.clear()); });
    EXPECT_THAT(addresses(), IsEmpty());
}

/// Everything at once: two threads change the hardware while the window redraws and the area comes and goes.
TEST_F(HardwareAreaTest, SurvivesChangesFromAllSides)
{
    show();
    std::atomic<int> running{2};
    std::thread replacing([&] {
        for (unsigned i = 0; i < 60; ++i)
            setHardware(makeHardware(i % 4));
        --running;
    });
    std::thread changing([&] {
        // The gate keeps the configuration from being replaced meanwhile.
        for (unsigned i = 0; i < 300; ++i) {
            const Kes::SignalGate::Guard gate;
            auto& hardware = *KesDevice::HardwareControl::getInstance();
            auto kesto = std::make_unique<KesDevice::Kesto>(
                KesDevice::Kesto::Address({10, 1, 0, static_cast<std::uint8_t>(i)}));
            auto& added = *kesto;
            if (!hardware.getKestos().addKesto(std::move(kesto)))
                continue;
            added.signalOperationErrorChanged.emit(Kes::Nullable<std::string>("error"));
            added.auxDC().signalEnableChanged.emit(true);
            (void)hardware.getKestos().removeAt(0);
        }
        --running;
    });
    int round = 0;
    EXPECT_TRUE(waitFor(
        [&] {
            if (++round % 10 == 0) {
                area.reset();
                show();
            }
            return running == 0;
        },
        std::chrono::seconds(60)));
    replacing.join();
    changing.join();
    setHardware(makeHardware(2));
    EXPECT_THAT(addresses(), ElementsAre("10.0.0.1", "10.0.0.2"));
}

} // namespace

} // namespace KesTest
