#include "support/GuiTest.h"

#include <KesCommonView/StyleZoomHelper.h>
#include <KesProgram/views/ProgramStatusBarView.h>
#include <KesProgram/views/ProgramView.h>
#include <KesProgram/views/StatusBarHardwareKestoIconsView.h>
#include <KesProgram/views/StatusBarInfoView.h>
#include <KesProgram/views/ToolButton.h>

namespace {

using namespace KesTest;
using KesView::StyleZoomHelper;

class ProgramViewTest : public GuiTest {
protected:
    void show()
    {
        window.open(nullptr, false);
        ASSERT_TRUE(waitFor([this] { return window.get_mapped(); }));
        runPendingEvents();
    }

    KesProgram::ProgramView window;
};

TEST_F(ProgramViewTest, KeypadZooms)
{
    struct EntryView : Gtk::Entry, Kes::IView {
    } entry;
    window.setContent(entry);
    show();
    entry.grab_focus();
    int reached = 0;
    entry.signal_key_press_event().connect([&](GdkEventKey*) { return ++reached, true; }, false);

    const struct {
        guint key, state;
        int zoom;
    } presses[] = {{GDK_KEY_KP_Add, 0, 100},
                   {GDK_KEY_KP_Add, GDK_CONTROL_MASK | GDK_SHIFT_MASK, 100},
                   {GDK_KEY_KP_Add, GDK_CONTROL_MASK | GDK_MOD2_MASK, 100},
                   {GDK_KEY_plus, GDK_CONTROL_MASK, 100},
                   {GDK_KEY_KP_Add, GDK_CONTROL_MASK, 110},
                   {GDK_KEY_KP_Add, GDK_CONTROL_MASK, 120},
                   {GDK_KEY_KP_Subtract, GDK_CONTROL_MASK, 110},
                   {GDK_KEY_KP_Multiply, GDK_CONTROL_MASK, 100}};
    StyleZoomHelper::zoomDefault();
    for (const auto& press : presses) {
        pressKey(window, press.key, press.state);
        EXPECT_EQ(StyleZoomHelper::getZoom(), press.zoom) << press.key << " with " << press.state;
    }
    EXPECT_EQ(reached, static_cast<int>(std::size(presses))) << "keys go on to the focused widget";
}

TEST_F(ProgramViewTest, ZoomingBackRestoresTheSize)
{
    LabelView content("A text that takes more room when it is larger");
    window.setContent(content);
    show();
    const auto size = [this] {
        int width = 0, height = 0;
        window.get_size(width, height);
        return std::pair(width, height);
    };
    const auto before = size();
    const int height = content.get_layout()->get_pixel_logical_extents().get_height();
    for (int i = 0; i < 20; ++i)
        pressKey(window, GDK_KEY_KP_Add, GDK_CONTROL_MASK);
    EXPECT_EQ(StyleZoomHelper::getZoom(), 200);
    EXPECT_TRUE(waitFor([&] { return size().first > before.first; }));
    pressKey(window, GDK_KEY_KP_Multiply, GDK_CONTROL_MASK);
    EXPECT_TRUE(waitFor([&] { return size() == before; })) << size().first << " of " << before.first;
    for (int i = 0; i < 20; ++i)
        pressKey(window, GDK_KEY_KP_Subtract, GDK_CONTROL_MASK);
    EXPECT_EQ(StyleZoomHelper::getZoom(), 50);
    EXPECT_TRUE(
        waitFor([&] { return content.get_layout()->get_pixel_logical_extents().get_height() < height; }));
    StyleZoomHelper::zoomDefault();
}

TEST_F(ProgramViewTest, WhatIsSwitchedOffGivesTheKeyboardToTheFooter)
{
    struct ButtonView : Gtk::Button, Kes::IView {
    } content;
    KesProgram::ProgramStatusBarView footer;
    KesProgram::StatusBarInfoView info;
    footer.setInfoArea(&info);
    window.setContent(content);
    window.setFooter(footer);
    show();
    content.grab_focus();
    content.set_sensitive(false);
    EXPECT_TRUE(waitFor([&] { return info.is_focus(); }));
}

TEST_F(ProgramViewTest, CommandsWithoutAPictureShowTheirTitle)
{
    struct Toolbar : Gtk::Toolbar, Kes::IView {
    } toolbar;
    toolbar.set_toolbar_style(Gtk::TOOLBAR_ICONS);
    KesProgram::ToolButton bare("NoSuchImage", "Title\nDescription");
    KesProgram::ToolButton drawn("ToolStopImage", "Stop\nDescription");
    KesProgram::StatusBarHardwareKestoIconsView icons;
    drawn.set_sensitive(false);
    toolbar.append(bare);
    toolbar.append(drawn);
    window.setHeader(toolbar);
    window.setFooter(icons);
    show();
    const auto getTexts = [](Gtk::Widget& root) {
        std::vector<std::string> texts;
        for (const auto* label : findWidgets<Gtk::Label>(root))
            texts.push_back(label->get_text());
        return texts;
    };
    EXPECT_TRUE(waitFor([&] { return getTexts(bare) == std::vector<std::string>{"Title"}; }));
    EXPECT_TRUE(getTexts(drawn).empty());
    icons.setAuxDCEnabled(true);
    runPendingEvents();
    EXPECT_TRUE(getTexts(icons).empty());
    findWidgets<Gtk::Image>(icons).front()->get_style_context()->remove_class("AuxDcWhiteImage");
    icons.setAuxDCEnabled(false);
    icons.setAuxDCEnabled(true);
    EXPECT_TRUE(waitFor([&] { return getTexts(icons).size() == 1; }));
    icons.setAuxDCEnabled(false);
    EXPECT_TRUE(icons.get_children().empty());
}

TEST_F(ProgramViewTest, OpensCentredOverItsParentAndForgetsOneThatDied)
{
    auto parent = std::make_unique<KesProgram::ProgramView>();
    LabelView place;
    parent->setContent(place);
    parent->setRectangle({200, 150, 600, 500});
    parent->open(nullptr, false);
    ASSERT_TRUE(waitFor([&] {
        int x = 0, y = 0;
        parent->get_position(x, y);
        return parent->is_active() && x == 200 && y == 150;
    }));

    window.set_default_size(301, 201);
    window.open(&place, true);
    EXPECT_TRUE(window.get_modal());
    EXPECT_TRUE(waitFor([this] {
        return window.getRectangle() == Kes::RectangleF{349, 299, 301, 201};
    })) << window.getRectangle().x
        << " " << window.getRectangle().y;
    parent.reset();
    window.hide();
    gtk_widget_unrealize(GTK_WIDGET(window.gobj()));
    show();
    EXPECT_TRUE(window.get_realized());
}

} // namespace
