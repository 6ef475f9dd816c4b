#include "support/GuiTest.h"

#include <KesCommonView/CollectionBoxView.h>
#include <KesCommonView/FirstFrame.h>
#include <KesCommonView/StyleZoomHelper.h>
#include <KesCommonView/ZoomedIcon.h>
#include <KesProgram/views/ProgramStatusBarView.h>
#include <KesProgram/views/ProgramView.h>
#include <KesProgram/views/SharedKestoPixbuf.h>
#include <KesProgram/views/StatusBarFileView.h>
#include <KesProgram/views/StatusBarHardwareKestoIconsView.h>
#include <KesProgram/views/StatusBarHardwareKestoStateView.h>
#include <KesProgram/views/StatusBarHardwareKestoView.h>
#include <KesProgram/views/StatusBarHardwareView.h>
#include <KesProgram/views/StatusBarInfoView.h>

#include <thread>

namespace {

using namespace KesTest;

class StatusBarViewsTest : public GuiTest {
protected:
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

TEST_F(StatusBarViewsTest, StatusAreasAreAnnounced)
{
    KesProgram::StatusBarInfoView info;
    KesProgram::StatusBarFileView file;
    KesProgram::ProgramStatusBarView bar;
    bar.setInfoArea(&info);
    bar.setArchiveArea(&file);
    int changes = 0;
    for (Gtk::Widget* area : {static_cast<Gtk::Widget*>(&bar), static_cast<Gtk::Widget*>(&file)})
        area->get_accessible()->property_accessible_name().signal_changed().connect([&] { ++changes; });
    info.setInfo("Point 3 of 8");
    file.setFileName("a.kar");
    EXPECT_EQ(bar.get_accessible()->get_name(), "Point 3 of 8");
    EXPECT_EQ(file.get_accessible()->get_name(), "File: a.kar");
    EXPECT_EQ(changes, 2);
    // What another thread has set before must not come after it.
    std::thread([&info] { info.setInfo("overtaken"); }).join();
    info.setInfo("Point 4 of 8");
    runPendingEvents();
    EXPECT_EQ(bar.get_accessible()->get_name(), "Point 4 of 8");
    // The focus may be there: what is announced already keeps still, but is read to whoever comes.
    EXPECT_EQ(info.get_accessible()->get_name(), "State of the program");
    EXPECT_EQ(info.get_accessible()->get_description(), "Point 4 of 8");
}

TEST_F(StatusBarViewsTest, ALongPathDoesNotMakeTheWindowWider)
{
    KesProgram::StatusBarFileView view;
    show(view);
    const auto all = findWidgets<Gtk::Label>(view);
    EXPECT_FALSE(isSeen(*all[0]));
    const std::string path = "/home/" + std::string(400, 'x') + "/опыт.kar";
    view.setFileName(path);
    runPendingEvents();
    EXPECT_TRUE(isSeen(*all[0]));
    EXPECT_LT(window.get_width(), 600);
    EXPECT_EQ(all[1]->get_tooltip_text(), path);
    view.setFileName("");
    EXPECT_FALSE(isSeen(*all[0]));
}

TEST_F(StatusBarViewsTest, APictureThatWaitsForTheFirstFrameHasItsRoom)
{
    const auto pictureOf = [](KesProgram::StatusBarHardwareKestoView& row) {
        return findWidgets<Gtk::Image>(row).at(0)->get_pixbuf();
    };
    KesProgram::StatusBarHardwareKestoView atOnce;
    EXPECT_EQ(pictureOf(atOnce), KesProgram::getSharedKestoPixbuf());

    Kes::FirstFrame::expect();
    auto gone = std::make_unique<KesProgram::StatusBarHardwareKestoView>();
    KesProgram::StatusBarHardwareKestoView waiting;
    atOnce.show_all();
    waiting.show_all();
    EXPECT_FALSE(pictureOf(waiting));
    EXPECT_EQ(widthOf(waiting), widthOf(atOnce));
    gone.reset();
    Kes::FirstFrame::tellDrawn();
    EXPECT_EQ(pictureOf(waiting), KesProgram::getSharedKestoPixbuf());
    EXPECT_EQ(widthOf(waiting), widthOf(atOnce));
}

TEST_F(StatusBarViewsTest, PicturesAndTicksFollowTheZoom)
{
    using KesView::StyleZoomHelper;
    KesProgram::ProgramView program;
    Gtk::CheckButton tick;
    Kes::ZoomedIcon icon("document-open-symbolic");
    struct Content : Gtk::Box, Kes::IView {
    } content;
    KesProgram::StatusBarHardwareKestoView row;
    for (Gtk::Widget* widget : {static_cast<Gtk::Widget*>(&row), static_cast<Gtk::Widget*>(&tick),
                                static_cast<Gtk::Widget*>(&icon)})
        content.pack_start(*widget, Gtk::PACK_SHRINK);
    program.setContent(content);
    program.open(nullptr, false);
    auto& picture = *findWidgets<Gtk::Image>(row).at(0);
    const auto sizes = [&] { return std::vector{widthOf(tick), widthOf(icon), widthOf(picture)}; };
    const auto before = sizes();
    for (int step = 0; step < 10; ++step)
        StyleZoomHelper::zoomIn();
    EXPECT_TRUE(waitFor([&] { return picture.get_pixbuf()->get_width() == 32; }));
    for (std::size_t i = 0; i < before.size(); ++i)
        EXPECT_GT(sizes().at(i), before.at(i) * 3 / 2) << i;
    StyleZoomHelper::zoomDefault();
    EXPECT_TRUE(waitFor([&] { return sizes() == before; }));
    EXPECT_EQ(picture.get_pixbuf(), KesProgram::getSharedKestoPixbuf());
}

TEST_F(StatusBarViewsTest, ColumnsOfDeviceRowsLineUp)
{
    struct Row {
        KesProgram::StatusBarHardwareKestoView view;
        KesProgram::StatusBarHardwareKestoStateView state;
        KesProgram::StatusBarHardwareKestoIconsView icons;
    } rows[2];
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
    EXPECT_EQ(icon(rows[0]), nullptr);
}

} // namespace
