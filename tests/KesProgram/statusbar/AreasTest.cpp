#include "StatusBarTest.h"

#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/statusbar/StatusBarFilePresenter.h>
#include <KesProgram/statusbar/StatusBarHardwareKestoStatePresenter.h>
#include <KesProgram/statusbar/StatusBarInfoPresenter.h>

namespace KesTest {

namespace {

class AreasTest : public StatusBarTest {};

TEST_F(AreasTest, InfoAreaShowsTheStateOfWhicheverThread)
{
    StatusModel model;
    model._setState("before");
    auto area = std::make_unique<KesProgram::StatusBarInfoPresenter>(model);
    auto& label = *findWidgets<Gtk::Label>(dynamic_cast<Gtk::Widget&>(*area->getView())).back();
    EXPECT_EQ(label.get_text(), "before");
    const auto setElsewhere = [&](const char* text) { std::thread([&] { model._setState(text); }).join(); };
    setElsewhere("Point 3 of 8");
    EXPECT_EQ(label.get_text(), "before") << "the widget was touched on another thread";
    EXPECT_TRUE(waitFor([&] { return label.get_text() == "Point 3 of 8"; }));
    setElsewhere("overtaken");
    model._setState("broken \xff text");
    runPendingEvents();
    EXPECT_TRUE(label.get_text().validate());
    EXPECT_EQ(label.get_text().substr(0, 7), "broken ");
    setElsewhere("too late");
    area.reset();
    runPendingEvents();
}

TEST_F(AreasTest, FileAreaNamesTheFileOrThatItIsNew)
{
    StatusModel model;
    model.init();
    const auto shown = [](KesProgram::StatusBarFilePresenter& area) {
        return dynamic_cast<Gtk::Widget&>(*area.getView()).get_accessible()->get_name();
    };
    KesProgram::StatusBarFilePresenter none(model);
    EXPECT_EQ(shown(none), "");
    StatusModel document;
    document.extension = "abc";
    document.init();
    KesProgram::StatusBarFilePresenter area(document);
    EXPECT_EQ(shown(area), "File: [New].abc");
    EXPECT_TRUE(document.getArchiveManager()->saveAs(home.file("a.abc")));
    EXPECT_EQ(shown(area), "File: " + home.file("a.abc"));
}

TEST_F(AreasTest, StateOfADeviceHasThreeVerdicts)
{
    using State = Kes::Nullable<std::string>;
    const KesDevice::Kesto::Address address({192, 168, 0, 17});
    const auto owned =
        KesDevice::Kesto::create(address, KesDevice::HardwareControl::getNetwork()->createLink(address));
    auto& kesto = *owned;
    KesProgram::StatusBarHardwareKestoStatePresenter presenter(kesto);
    auto& label = dynamic_cast<Gtk::Label&>(*presenter.getView());
    EXPECT_EQ(label.get_text(), "192.168.0.17");
    const auto style = label.get_style_context();
    /// The tooltip, and whether the state is an error or undefined.
    const auto shown = [&] {
        return std::tuple<std::string, bool, bool>(label.get_tooltip_text(), style->has_class("stateError"),
                                                   style->has_class("stateUndefined"));
    };
    const std::tuple unknown("", false, true);
    const std::tuple valid("Ready for operation", false, false);
    const std::tuple invalid("No cooling", true, false);
    EXPECT_EQ(shown(), unknown);
    for (const auto& row :
         {std::pair(State("No cooling"), invalid), {State(""), valid}, {State(), unknown}}) {
        const auto before = shown();
        std::thread([&] { kesto.signalOperationErrorChanged.emit(row.first); }).join();
        EXPECT_EQ(shown(), before) << "the widget was touched on the device's thread";
        EXPECT_TRUE(waitFor([&] { return shown() == row.second; }));
    }
    // At once on the GUI thread, and not overtaken by what is still queued.
    std::thread([&] { kesto.signalOperationErrorChanged.emit(State()); }).join();
    kesto.signalOperationErrorChanged.emit(State(""));
    EXPECT_EQ(shown(), valid);
    runPendingEvents();
    EXPECT_EQ(shown(), valid);
}

} // namespace

} // namespace KesTest
