#include "StatusBarTest.h"

#include <KesProgram/statusbar/StatusBarHardwareKestoPresenter.h>
#include <KesProgram/statusbar/StatusBarHardwareKestoStatePresenter.h>

#include <gtkmm/label.h>

#include <atomic>
#include <thread>

namespace KesTest {

namespace {

class KestoRowTest : public StatusBarTest {
protected:
    /// The tooltip, and whether the state is an error or undefined.
    using Shown = std::tuple<std::string, bool, bool>;

    static Shown shown(Gtk::Label& label)
    {
        const auto style = label.get_style_context();
        return {label.get_tooltip_text(), style->has_class("stateError"), style->has_class("stateUndefined")};
    }

    KesDevice::Kesto kesto{KesDevice::Kesto::Address({192, 168, 0, 17})};
};

TEST_F(KestoRowTest, StateHasThreeVerdicts)
{
    using State = Kes::Nullable<std::string>;
    KesProgram::StatusBarHardwareKestoStatePresenter presenter(kesto);
    auto& label = dynamic_cast<Gtk::Label&>(*presenter.getView());
    EXPECT_EQ(label.get_text(), "192.168.0.17");
    const Shown unknown{"", false, true};
    const Shown valid{"Ready for operation", false, false};
    const Shown invalid{"No cooling", true, false};
    EXPECT_EQ(shown(label), unknown);
    const std::pair<State, Shown> cases[] = {
        {State("No cooling"), invalid}, {State(""), valid}, {State(), unknown}};
    for (const auto& [state, expected] : cases) {
        const auto before = shown(label);
        std::thread([&] { kesto.signalOperationErrorChanged.emit(state); }).join();
        EXPECT_EQ(shown(label), before) << "the widget was touched on the device's thread";
        EXPECT_TRUE(waitFor([&] { return shown(label) == expected; }));
    }
    // At once on the GUI thread, and not overtaken by what is still queued.
    std::thread([&] { kesto.signalOperationErrorChanged.emit(State()); }).join();
    kesto.signalOperationErrorChanged.emit(State(""));
    EXPECT_EQ(shown(label), valid);
    runPendingEvents();
    EXPECT_EQ(shown(label), valid);
}

TEST_F(KestoRowTest, RowMayDieWhileItsDeviceReports)
{
    for (int round = 0; round < 20; ++round) {
        auto presenter = std::make_unique<KesProgram::StatusBarHardwareKestoPresenter>(kesto);
        std::atomic<bool> isOver{false};
        std::thread device([&] {
            while (!isOver) {
                kesto.signalOperationErrorChanged.emit(Kes::Nullable<std::string>("Overheat"));
                kesto.auxDC().signalEnableChanged.emit(true);
            }
        });
        turnMainLoop(20);
        presenter.reset();
        isOver = true;
        device.join();
    }
}

} // namespace

} // namespace KesTest
