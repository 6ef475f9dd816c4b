#include "support/GuiTest.h"
#include "support/TemporaryHome.h"

#include <KesCommon/DesktopOpener.h>
#include <KesCommonView/CollectionBoxView.h>
#include <KesCommonView/GtkWidgetHelper.h>
#include <KesCommonView/HelpView.h>
#include <KesCommonView/ReadOnlySwitchableContainerPresenter.h>
#include <KesCommonView/SharedSizeGroup.h>
#include <KesCommonView/WindowView.h>

#include <atkmm/object.h>
#include <gtkmm/box.h>
#include <gtkmm/entry.h>
#include <gtkmm/label.h>
#include <gtkmm/toolbutton.h>

namespace {

using KesTest::runPendingEvents;
using KesTest::waitFor;

class LabelView : public Gtk::Label, public Kes::IView {
public:
    using Gtk::Label::Label;
};
class NoWidget : public Kes::IView {};

class WidgetsTest : public KesTest::GuiTest {};

std::vector<std::string> getTexts(Gtk::Container& container)
{
    std::vector<std::string> texts;
    for (auto* label : KesTest::findWidgets<Gtk::Label>(container))
        texts.push_back(label->get_text());
    return texts;
}

TEST_F(WidgetsTest, collectionBoxKeepsTheOrderAndShowsWhatIsInserted)
{
    Gtk::Window window;
    Kes::CollectionBoxView box;
    window.add(box);
    window.show_all();
    LabelView a("a");
    LabelView b("b");
    LabelView c("c");
    NoWidget none;
    box.insertView(0, &c);
    box.insertView(0, &a);
    box.insertView(1, &b);
    box.insertView(1, &none);
    box.insertView(0, nullptr);
    EXPECT_THAT(getTexts(box), testing::ElementsAre("a", "b", "c"));
    EXPECT_TRUE(KesTest::isSeen(b));
    box.removeView(&b);
    box.removeView(&b);
    box.removeView(&none);
    EXPECT_THAT(getTexts(box), testing::ElementsAre("a", "c"));
}

TEST_F(WidgetsTest, columnsOfOneOwnerLineUpAndLeaveWithTheirRow)
{
    Gtk::Window window;
    Gtk::Box rows(Gtk::ORIENTATION_VERTICAL);
    Kes::SharedSizeGroupOwner owner;
    owner.add(rows);
    auto makeRow = [&](Kes::SharedSizeGroup& group, Gtk::Label& label) {
        auto* row = Gtk::manage(new Gtk::Box);
        group.add(label);
        row->pack_start(group, Gtk::PACK_SHRINK);
        rows.add(*row);
        return row;
    };
    Kes::SharedSizeGroup first("type");
    Kes::SharedSizeGroup second("type");
    Kes::SharedSizeGroup other("state");
    Gtk::Label shortText("a");
    Gtk::Label longText("a long type of device");
    Gtk::Label otherText("b");
    makeRow(first, shortText);
    auto* longRow = makeRow(second, longText);
    makeRow(other, otherText);
    window.add(owner);
    window.show_all();
    ASSERT_TRUE(waitFor([&] { return first.get_allocated_width() > 1; }));
    EXPECT_EQ(first.get_allocated_width(), second.get_allocated_width());
    EXPECT_LT(other.get_allocated_width(), first.get_allocated_width());
    const int together = first.get_allocated_width();
    longRow->remove(second);
    EXPECT_TRUE(waitFor([&] { return first.get_allocated_width() < together; }));
    longRow->add(second);
    EXPECT_TRUE(waitFor([&] { return first.get_allocated_width() == together; }));
}

TEST_F(WidgetsTest, parentWindowIsTheOneAboveTheView)
{
    Kes::WindowView window;
    LabelView inside("inside");
    LabelView outside("outside");
    NoWidget none;
    window.setContent(inside);
    EXPECT_EQ(Kes::GtkWidgetHelper::getParentWindow(&inside), &window);
    EXPECT_EQ(Kes::GtkWidgetHelper::getParentWindow(&window), &window);
    EXPECT_EQ(Kes::GtkWidgetHelper::getParentWindow(&outside), nullptr);
    EXPECT_EQ(Kes::GtkWidgetHelper::getParentWindow(&none), nullptr);
    EXPECT_EQ(Kes::GtkWidgetHelper::getParentWindow(nullptr), nullptr);
}

TEST_F(WidgetsTest, accessibleNameReachesTheButtonInsideAToolItem)
{
    Gtk::ToolButton button;
    Kes::GtkWidgetHelper::setAccessibleName(button, "Пуск");
    EXPECT_EQ(button.get_accessible()->get_name(), "Пуск");
    EXPECT_EQ(button.get_child()->get_accessible()->get_name(), "Пуск");
}

class SwitchableView : public LabelView, public Kes::IReadOnlySwitchable {
public:
    using LabelView::LabelView;
    void setIsReadOnly(bool value) override { readOnly = value; }
    bool readOnly = false;
};

TEST_F(WidgetsTest, readOnlyContainerSwitchesPresentAndLaterContent)
{
    LabelView plain("plain");
    SwitchableView own("own");
    LabelView late("late");
    {
        Kes::ReadOnlySwitchableContainerPresenter presenter;
        presenter.add(&plain);
        presenter.add(&own);
        presenter.add(nullptr);
        EXPECT_FALSE(presenter.isReadOnly());
        presenter.setIsReadOnly(true);
        presenter.add(&late);
        EXPECT_FALSE(plain.get_sensitive());
        EXPECT_FALSE(late.get_sensitive());
        EXPECT_TRUE(own.readOnly);
        EXPECT_TRUE(own.get_sensitive());
        presenter.setIsReadOnly(false);
        EXPECT_TRUE(plain.get_sensitive());
        EXPECT_FALSE(own.readOnly);
    }
    EXPECT_EQ(plain.get_parent(), nullptr);
    EXPECT_EQ(plain.get_text(), "plain");
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
    EXPECT_EQ(dialogs.getMessages()[0].buttons, Kes::DialogResult::Ok);
    EXPECT_EQ(opened.size(), 1u);
}

} // namespace
