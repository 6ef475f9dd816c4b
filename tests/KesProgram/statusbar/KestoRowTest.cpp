#include "StatusBarTest.h"

#include "support/FakeKestoLink.h"

#include <KesProgram/statusbar/StatusBarHardwareKestoIconsPresenter.h>
#include <KesProgram/statusbar/StatusBarHardwareKestoPresenter.h>
#include <KesProgram/statusbar/StatusBarHardwareKestoStatePresenter.h>

#include <gmock/gmock.h>
#include <gtkmm/image.h>
#include <gtkmm/label.h>

namespace KesTest {

namespace {

class KestoRowTest : public StatusBarTest {
protected:
    struct Shown {
        std::string tooltip;
        bool isError;
        bool isUndefined;

        bool operator==(const Shown&) const = default;
    };

    static Shown shown(Gtk::Label& label)
    {
        const auto style = label.get_style_context();
        return {label.get_tooltip_text(), style->has_class("stateError"), style->has_class("stateUndefined")};
    }

    const KesDevice::Kesto::Address address{{192, 168, 0, 17}};
    FakeKesto fake;
    KesDevice::Kesto kesto{address, fake.createLink()};
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
    const std::pair<State, Shown> cases[] = {{State("No cooling"), invalid},
                                             {State(""), valid},
                                             {State(), unknown},
                                             {State(""), valid},
                                             {State("No cooling"), invalid}};
    for (const auto& [state, expected] : cases) {
        SCOPED_TRACE(expected.tooltip);
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

TEST_F(KestoRowTest, TypeAndStateAppearWhenTheDeviceIsConnected)
{
    fake.setIdentifer({3, 17});
    KesProgram::StatusBarHardwareKestoPresenter presenter(kesto);
    const auto labels = findWidgets<Gtk::Label>(dynamic_cast<Gtk::Widget&>(*presenter.getView()));
    ASSERT_EQ(labels.size(), 2U);
    EXPECT_EQ(labels[0]->get_text(), KesDriver::KestoIdentifer().getTypeName());
    onAnotherThread([&] {
        EXPECT_TRUE(kesto.connect());
        EXPECT_TRUE(kesto.updateState());
    });
    EXPECT_TRUE(
        waitFor([&] { return labels[0]->get_text() == KesDriver::KestoIdentifer(3, 17).getTypeName(); }));
    EXPECT_TRUE(kesto.getOperationError().hasValue());
    EXPECT_TRUE(waitFor([&] { return !shown(*labels[1]).isUndefined; }));
}

TEST_F(KestoRowTest, IconFollowsTheAuxiliarySupply)
{
    KesProgram::StatusBarHardwareKestoIconsPresenter presenter(kesto);
    auto& view = dynamic_cast<Gtk::Widget&>(*presenter.getView());
    const auto isShown = [&] { return findByClass(view, "AuxDcWhiteImage") != nullptr; };
    EXPECT_FALSE(isShown());
    onAnotherThread([&] { EXPECT_TRUE(kesto.auxDC().set(true, 110)); });
    EXPECT_TRUE(waitFor(isShown));
    KesProgram::StatusBarHardwareKestoIconsPresenter later(kesto);
    EXPECT_NE(findByClass(dynamic_cast<Gtk::Widget&>(*later.getView()), "AuxDcWhiteImage"), nullptr);
    EXPECT_TRUE(kesto.auxDC().set(false, 110));
    EXPECT_TRUE(waitFor([&] { return !isShown(); }));
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
