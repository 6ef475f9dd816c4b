#include "StatusBarTest.h"

#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/statusbar/StatusBarFilePresenter.h>
#include <KesProgram/statusbar/StatusBarInfoPresenter.h>

namespace {

using namespace KesTest;

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

} // namespace
