#include "ViewDoubles.h"

#include <KesCommon/Directories.h>
#include <KesCommonView/CollectionBoxView.h>
#include <KesDevice/HardwareManagerText.h>
#include <KesProgram/views/ProgramStatusBarView.h>
#include <KesProgram/views/SharedKestoPixbuf.h>
#include <KesProgram/views/StatusBarFileView.h>
#include <KesProgram/views/StatusBarHardwareKestoIconsView.h>
#include <KesProgram/views/StatusBarHardwareKestoStateView.h>
#include <KesProgram/views/StatusBarHardwareKestoView.h>
#include <KesProgram/views/StatusBarHardwareView.h>
#include <KesProgram/views/StatusBarInfoView.h>
#include <KesProgram/views/StatusBarSyncView.h>

namespace {

using namespace KesTest;
using testing::ElementsAre;

class StatusBarViewsTest : public GuiTest {
protected:
    static std::vector<Gtk::Label*> labels(Gtk::Widget& widget) { return findWidgets<Gtk::Label>(widget); }

    static int leftOf(Gtk::Widget& widget, Gtk::Widget& ancestor)
    {
        int x = -1, y = -1;
        widget.translate_coordinates(ancestor, 0, 0, x, y);
        return x;
    }

    void show(Gtk::Widget& widget)
    {
        window.add(widget);
        window.show_all();
        ASSERT_TRUE(waitFor([this] { return window.get_mapped(); }));
        runPendingEvents();
    }

    Gtk::Window window;
};

TEST_F(StatusBarViewsTest, AreasHaveTheirPlaces)
{
    LabelView info, archive, hardware;
    NoWidgetView none;
    KesProgram::ProgramStatusBarView bar;
    bar.setInfoArea(&info);
    bar.setArchiveArea(&archive);
    bar.setHardwareArea(&hardware);
    bar.setInfoArea(nullptr);
    bar.setHardwareArea(&none);
    EXPECT_EQ(bar.get_child_at(0, 0), &info);
    EXPECT_EQ(bar.get_child_at(1, 0), &info);
    EXPECT_EQ(bar.get_child_at(0, 1), &archive);
    EXPECT_EQ(bar.get_child_at(1, 1), &hardware);
    EXPECT_EQ(bar.get_children().size(), 3u);
    EXPECT_FALSE(bar.compute_expand(Gtk::ORIENTATION_VERTICAL));
}

TEST_F(StatusBarViewsTest, StatusAreasAreAnnounced)
{
    KesProgram::ProgramStatusBarView bar;
    KesProgram::StatusBarInfoView info;
    KesProgram::StatusBarFileView file;
    KesProgram::StatusBarHardwareView hardware;
    int changes = 0;
    for (Gtk::Widget* area : std::initializer_list<Gtk::Widget*>{&bar, &info, &file, &hardware}) {
        EXPECT_EQ(area->get_accessible()->get_role(), Atk::ROLE_STATUSBAR);
        area->get_accessible()->property_accessible_name().signal_changed().connect([&] { ++changes; });
    }
    info.setInfo("Point 3 of 8");
    file.setFileName("a.kar");
    EXPECT_EQ(info.get_accessible()->get_name(), "Point 3 of 8");
    EXPECT_EQ(file.get_accessible()->get_name(), "File: a.kar");
    EXPECT_EQ(changes, 2);
}

TEST_F(StatusBarViewsTest, InfoMayBeSetFromAnyThread)
{
    auto view = std::make_unique<KesProgram::StatusBarInfoView>();
    auto* label = labels(*view).front();
    view->setInfo("готово");
    const auto setElsewhere = [&](const char* text) { std::thread([&] { view->setInfo(text); }).join(); };
    setElsewhere("first");
    setElsewhere("second");
    EXPECT_EQ(label->get_text(), "готово");
    EXPECT_TRUE(waitFor([&] { return label->get_text() == "second"; }));

    setElsewhere("late");
    view->setInfo("latest");
    runPendingEvents();
    EXPECT_EQ(label->get_text(), "latest");
    view->setInfo("broken \xff text");
    EXPECT_TRUE(label->get_text().validate());

    setElsewhere("too late");
    view.reset();
    runPendingEvents();
}

TEST_F(StatusBarViewsTest, FileNameAndItsCaption)
{
    lng::language = lng::Russian;
    KesProgram::StatusBarFileView view;
    show(view);
    const auto all = labels(view);
    EXPECT_EQ(all[0]->get_text(), "Файл: ");
    EXPECT_FALSE(isSeen(*all[0]));
    EXPECT_GE(view.get_height(), 35);

    const std::string path = "/home/" + std::string(400, 'x') + "/опыт.kar";
    view.setFileName(path);
    runPendingEvents();
    EXPECT_TRUE(isSeen(*all[0]));
    EXPECT_EQ(all[1]->get_text(), path);
    EXPECT_EQ(all[1]->get_tooltip_text(), path);
    EXPECT_LT(window.get_width(), 600) << "a long path does not make the window wider";

    view.setFileName("");
    EXPECT_FALSE(isSeen(*all[0]));
    EXPECT_EQ(all[1]->get_text(), "");
    view.setFileName("b.kar");
    EXPECT_TRUE(isSeen(*all[0]));
}

TEST_F(StatusBarViewsTest, SyncButton)
{
    KesProgram::StatusBarSyncView view;
    show(view);
    int asked = 0;
    view.signalRequestInfo.connect([&] { ++asked; });
    view.setName("GPS");
    view.setTooltip("Global Positioning System");
    EXPECT_EQ(labels(view)[0]->get_text(), "Sync:");
    EXPECT_EQ(view.get_accessible()->get_name(), "Sync: GPS");
    EXPECT_EQ(view.get_accessible()->get_description(), "Global Positioning System");

    view.activate();
    EXPECT_TRUE(waitFor([&] { return asked == 1; }));
    view.setName("");
    EXPECT_EQ(view.get_accessible()->get_name(), "Sync:");
}

TEST_F(StatusBarViewsTest, HardwarePlacesAreReplaced)
{
    KesProgram::StatusBarHardwareView view;
    show(view);
    LabelView first("first"), sync("sync"), kestos("kestos"), updates("updates");
    NoWidgetView none;
    view.setStateUpdateView(&updates);
    view.setSyncView(&first);
    view.setSyncView(&sync);
    view.setKestoCollection(&kestos);
    EXPECT_THAT(labels(view), ElementsAre(&sync, &kestos, &updates));
    for (auto* label : labels(view))
        EXPECT_TRUE(isSeen(*label));
    view.setSyncView(nullptr);
    view.setKestoCollection(&none);
    EXPECT_THAT(labels(view), ElementsAre(&updates));
    EXPECT_EQ(first.get_parent(), nullptr);
}

TEST_F(StatusBarViewsTest, ColumnsOfDeviceRowsLineUp)
{
    struct Row {
        KesProgram::StatusBarHardwareKestoView view;
        KesProgram::StatusBarHardwareKestoStateView state;
        KesProgram::StatusBarHardwareKestoIconsView icons;
    };
    Row rows[2];
    Kes::CollectionBoxView collection;
    KesProgram::StatusBarHardwareView hardware;
    for (auto& row : rows) {
        row.view.setState(&row.state);
        row.view.setIcons(&row.icons);
        row.icons.setAuxDCEnabled(true);
        collection.insertView(0, &row.view);
    }
    hardware.setKestoCollection(&collection);
    rows[0].view.setKestoType("KESTO");
    rows[1].view.setKestoType("A much longer type");
    rows[0].state.setText("192.168.100.200");
    rows[1].state.setText("10.0.0.1");
    show(hardware);

    const auto icon = [](Row& row) { return findByClass(row.icons, "AuxDcWhiteImage"); };
    EXPECT_GT(leftOf(rows[0].state, hardware), 0);
    EXPECT_EQ(leftOf(rows[0].state, hardware), leftOf(rows[1].state, hardware));
    EXPECT_EQ(leftOf(*icon(rows[0]), hardware), leftOf(*icon(rows[1]), hardware));

    rows[0].icons.setAuxDCEnabled(false);
    rows[0].icons.setAuxDCEnabled(false);
    EXPECT_EQ(icon(rows[0]), nullptr);
    EXPECT_EQ(icon(rows[1])->get_tooltip_text(), lng::HardwareManager::get("auxDC.enabled"));
    EXPECT_EQ(icon(rows[1])->get_accessible()->get_name(), lng::HardwareManager::get("auxDC.enabled"));

    rows[0].view.setState(nullptr);
    EXPECT_EQ(rows[0].state.get_parent(), nullptr);
    rows[0].view.setIcons(&rows[0].state);
    EXPECT_EQ(rows[0].icons.get_parent(), nullptr);
    EXPECT_NE(rows[0].state.get_parent(), nullptr);
}

TEST_F(StatusBarViewsTest, ViewsHaveTheirStyleClasses)
{
    KesProgram::StatusBarInfoView info;
    KesProgram::StatusBarSyncView sync;
    KesProgram::StatusBarHardwareView hardware;
    KesProgram::StatusBarHardwareKestoStateView state;
    KesProgram::ProgramStatusBarView bar;
    KesProgram::StatusBarFileView file;
    KesProgram::StatusBarHardwareKestoView row;
    KesProgram::StatusBarHardwareKestoIconsView icons;
    icons.setAuxDCEnabled(true);
    const std::pair<Gtk::Widget*, std::vector<const char*>> expected[] = {
        {&bar, {"statusbar"}},
        {&file, {"fileNameArea"}},
        {&row, {"innerContentMargin"}},
        {findWidgets<Gtk::Image>(row).front(), {"icon", "innerContentMargin"}},
        {labels(row).front(), {"blockMargin"}},
        {&icons, {"innerContentMargin"}},
        {findWidgets<Gtk::Image>(icons).front(), {"AuxDcWhiteImage", "ImageButton"}},
        {&info, {"statusbar", "statusInfoArea"}},
        {labels(info).front(), {"status_label"}},
        {&sync,
         {"ImageNormalButton", "StatusBarSyncView", "recordValueMargin", "roundedControl",
          "DefaultControlBorder"}},
        {labels(sync).front(), {"innerContentMargin"}},
        {labels(sync).back(), {"innerContentMargin"}},
        {&hardware, {"statusHardware"}},
        {&state, {"innerContentMargin"}}};
    for (const auto& [widget, classes] : expected)
        for (const auto* name : classes)
            EXPECT_TRUE(widget->get_style_context()->has_class(name)) << name;
}

TEST_F(StatusBarViewsTest, RowsShareOnePicture)
{
    const auto picture = KesProgram::getSharedKestoPixbuf();
    ASSERT_TRUE(picture) << Kes::getThemesDir();
    EXPECT_EQ(std::max(picture->get_width(), picture->get_height()), 16);
    KesProgram::StatusBarHardwareKestoView rows[3];
    for (auto& row : rows)
        EXPECT_EQ(findWidgets<Gtk::Image>(row).front()->get_pixbuf(), picture);
}

} // namespace
