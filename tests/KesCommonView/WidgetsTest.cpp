#include "support/GuiTest.h"
#include "support/TemporaryHome.h"

#include <KesCommon/DesktopOpener.h>
#include <KesCommonView/GtkWidgetHelper.h>
#include <KesCommonView/HelpView.h>
#include <KesCommonView/ReadOnlySwitchableContainerPresenter.h>
#include <KesCommonView/SharedSizeGroup.h>
#include <KesCommonView/WindowView.h>

#include <atkmm/object.h>
#include <gtkmm/box.h>
#include <gtkmm/comboboxtext.h>
#include <gtkmm/label.h>

namespace {

using KesTest::waitFor;

class LabelView : public Gtk::Label, public Kes::IView {
public:
    using Gtk::Label::Label;
};
class NoWidget : public Kes::IView {};

class WidgetsTest : public KesTest::GuiTest {};

TEST_F(WidgetsTest, columnsOfOneOwnerLineUpAndLeaveWithTheirRow)
{
    Gtk::Window window;
    Gtk::Box rows(Gtk::ORIENTATION_VERTICAL);
    Kes::SharedSizeGroupOwner owner;
    owner.add(rows);
    Kes::SharedSizeGroup first("type");
    Kes::SharedSizeGroup second("type");
    Gtk::Label shortText("a");
    Gtk::Label longText("a long type of device");
    Gtk::Box row;
    first.add(shortText);
    second.add(longText);
    row.pack_start(second, Gtk::PACK_SHRINK);
    rows.add(row);
    first.set_halign(Gtk::ALIGN_START);
    rows.add(first);
    window.add(owner);
    window.show_all();
    ASSERT_TRUE(waitFor([&] { return first.get_allocated_width() > 1; }));
    const int together = first.get_allocated_width();
    EXPECT_EQ(together, second.get_allocated_width());
    row.remove(second);
    EXPECT_TRUE(waitFor([&] { return first.get_allocated_width() < together; }));
    row.add(second);
    EXPECT_TRUE(waitFor([&] { return first.get_allocated_width() == together; }));
}

TEST_F(WidgetsTest, parentWindowIsTheOneAboveTheView)
{
    Kes::WindowView window;
    LabelView inside("inside");
    LabelView outside("outside");
    NoWidget none;
    window.setContent(inside);
    using Kes::GtkWidgetHelper::getParentWindow;
    EXPECT_TRUE(getParentWindow(&inside) == &window && getParentWindow(&window) == &window);
    for (Kes::IView* view : std::initializer_list<Kes::IView*>{&outside, &none, nullptr})
        EXPECT_EQ(getParentWindow(view), nullptr);
}

TEST_F(WidgetsTest, readOnlyContainerSwitchesPresentAndLaterContent)
{
    LabelView plain("plain");
    LabelView late("late");
    {
        Kes::ReadOnlySwitchableContainerPresenter presenter;
        presenter.add(&plain);
        presenter.add(nullptr);
        presenter.setIsReadOnly(true);
        presenter.add(&late);
        EXPECT_FALSE(plain.get_sensitive() || late.get_sensitive());
        presenter.setIsReadOnly(false);
        EXPECT_TRUE(plain.get_sensitive() && late.get_sensitive());
    }
    EXPECT_EQ(plain.get_parent(), nullptr);
}

TEST_F(WidgetsTest, helpOpensTheFileOrTellsThatItCannot)
{
    KesTest::TemporaryHome home;
    KesTest::writeFile(home.getPath() / "Help.pdf", "%PDF");
    std::vector<std::string> opened;
    auto previous = Kes::DesktopOpener::replace([&](const std::string& path) -> Kes::Result {
        opened.push_back(path);
        return true;
    });
    LabelView parent("parent");
    Kes::HelpView help;
    help.show(&parent, home.file("Help.pdf"));
    EXPECT_THAT(opened, testing::ElementsAre(home.file("Help.pdf")));
    dialogs.answer(Kes::DialogResult::Ok);
    help.show(&parent, home.file("None.pdf"));
    Kes::DesktopOpener::replace(std::move(previous));
    ASSERT_EQ(dialogs.getMessages().size(), 1u);
    EXPECT_EQ(dialogs.getMessages()[0].text, "Error opening help file:\n " + home.file("None.pdf"));
    EXPECT_EQ(dialogs.getMessages()[0].parent, &parent);
    EXPECT_EQ(opened.size(), 1u);
}

TEST_F(WidgetsTest, whatHasTheFocusOfAComboBoxTellsItsNameAndChoice)
{
    Gtk::Window window;
    Gtk::ComboBoxText combo;
    combo.append("GPS");
    Kes::GtkWidgetHelper::setAccessibleName(combo, "Mode");
    window.add(combo);
    window.show_all();
    const auto focusable = KesTest::findWidgets(combo, [](auto& widget) { return widget.get_can_focus(); });
    const auto name = [&] { return focusable.back()->get_accessible()->get_name(); };
    EXPECT_EQ(name(), "Mode");
    combo.set_active(0);
    EXPECT_EQ(name(), "Mode: GPS");
}

} // namespace
