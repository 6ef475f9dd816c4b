#include "support/GuiTest.h"
#include "support/TemporaryHome.h"

#include <KesCommonView/ReadOnlySwitchableContainerPresenter.h>
#include <KesCommonView/WindowView.h>
#include <KesTreeManager/NodeTreeContentPresenter.h>
#include <KesTreeManager/NodeTreeView.h>
#include <KesTreeManager/NodeValueView.h>
#include <KesTreeRelay/RelayNodes.h>

namespace {

using KesTree::Node;
namespace RelayNodes = KesTree::RelayNodes;

class NodeTreeContentPresenterTest : public KesTest::GuiTest {
protected:
    NodeTreeContentPresenterTest()
    {
        container.add(presenter->getView());
        window.setContent(*container.getView());
        window.show(nullptr);
        KesTest::waitFor([this] { return window.is_active(); });
    }

    Node& node(const char* id) { return *stage->find(id); }
    KesTree::NodeValueView& row(const char* id)
    {
        for (auto* row : KesTest::findWidgets<KesTree::NodeValueView>(window))
            if (KesTest::findWidgets<Gtk::Label>(*row).at(0)->get_text() == node(id).getName())
                return *row;
        throw std::out_of_range(id);
    }
    Gtk::Entry& entry(const char* id) { return *KesTest::findWidgets<Gtk::Entry>(row(id)).at(0); }
    Gtk::ComboBoxText& combo(const char* id)
    {
        return *KesTest::findWidgets<Gtk::ComboBoxText>(row(id)).at(0);
    }
    /// What is said beside the editor.
    std::string note(const char* id)
    {
        return KesTest::findWidgets<Gtk::Label>(row(id)).back()->get_text().raw();
    }
    bool isRefused(const char* id)
    {
        auto& row = this->row(id);
        auto* icon = KesTest::findWidgets<Gtk::Image>(row).at(0);
        const bool marked = entry(id).get_style_context()->has_class("error");
        EXPECT_EQ(icon->get_visible(), marked);
        return marked;
    }
    void press(Gtk::Widget& widget, guint key)
    {
        widget.grab_focus();
        KesTest::pressKey(dynamic_cast<Gtk::Window&>(*widget.get_toplevel()), key);
    }

    std::unique_ptr<Node> stage = RelayNodes::overcurrentStage();
    std::unique_ptr<KesTree::NodeTreeContentPresenter> presenter =
        std::make_unique<KesTree::NodeTreeContentPresenter>(stage.get());
    Kes::ReadOnlySwitchableContainerPresenter container;
    Kes::WindowView window;
};

TEST_F(NodeTreeContentPresenterTest, AGroupWithoutAnIconShowsNone)
{
    KesTest::TemporaryHome home;
    KesTest::writeFile(home.getPath() / "hicolor/scalable/apps/kes-damaged-symbolic.svg", "<svg");
    const auto theme = Gtk::IconTheme::get_default();
    theme->append_search_path(home.getPath().string());
    ASSERT_TRUE(theme->has_icon("kes-damaged-symbolic"));
    KesTree::NodeTreeView tree;
    for (const auto& [icon, pictures] : {std::pair("kes-node-of-a-program-symbolic", 0U),
                                         {"kes-damaged-symbolic", 0U},
                                         {"document-open-symbolic", 1U}}) {
        tree.beginGroup(icon, icon, false);
        EXPECT_EQ(KesTest::findWidgets<Gtk::Image>(tree).size(), pictures) << icon;
        tree.endGroup();
    }
}

TEST_F(NodeTreeContentPresenterTest, AcceptedTextTakesEffectWhileItIsTyped)
{
    auto& editor = entry(RelayNodes::TimeMultiplier);
    for (const auto& [text, value] : {std::pair("2", 2.0), {"2,", 2.0}, {"2,5", 2.5}}) {
        editor.set_text(text);
        EXPECT_EQ(node(RelayNodes::TimeMultiplier).getNumber(), value);
        EXPECT_FALSE(isRefused(RelayNodes::TimeMultiplier));
        EXPECT_EQ(editor.get_text(), text);
    }
    editor.grab_focus();
    entry(RelayNodes::NominalCurrent).grab_focus();
    EXPECT_TRUE(KesTest::waitFor([&] { return editor.get_text() == "2.5"; }));
}

TEST_F(NodeTreeContentPresenterTest, RefusedTextIsExplainedInPlaceAndEscapeTakesItBack)
{
    auto& editor = entry(RelayNodes::SettingCurrent);
    editor.set_text("7");
    press(editor, GDK_KEY_Return);
    for (const char* text : {"70", "700"})
        editor.set_text(text);
    EXPECT_TRUE(isRefused(RelayNodes::SettingCurrent));
    EXPECT_THAT(note(RelayNodes::SettingCurrent), testing::StartsWith("700\u00a0A is outside"));
    EXPECT_EQ(node(RelayNodes::SettingCurrent).getNumber(), 7.0) << "the digits on the way were never meant";

    press(editor, GDK_KEY_Return);
    editor.set_text("8");
    editor.set_text("x");
    press(editor, GDK_KEY_Escape);
    EXPECT_FALSE(isRefused(RelayNodes::SettingCurrent));
    EXPECT_EQ(editor.get_text(), "7");
    EXPECT_EQ(node(RelayNodes::SettingCurrent).getNumber(), 7.0);
    EXPECT_TRUE(window.get_visible());
    // With nothing to take back, Escape belongs to the window.
    press(editor, GDK_KEY_Escape);
    EXPECT_FALSE(window.get_visible());
}

TEST_F(NodeTreeContentPresenterTest, FollowsChangesMadeElsewhere)
{
    auto& editor = entry(RelayNodes::SettingCurrent);
    // Refused only because of another value: accepted as soon as that one allows it.
    ASSERT_TRUE(node(RelayNodes::NominalCurrent).setText("0.5"));
    editor.set_text("30");
    EXPECT_TRUE(isRefused(RelayNodes::SettingCurrent));
    entry(RelayNodes::NominalCurrent).set_text("1");
    EXPECT_FALSE(isRefused(RelayNodes::SettingCurrent));
    EXPECT_EQ(node(RelayNodes::SettingCurrent).getNumber(), 30.0);

    editor.set_text("nonsense");
    const auto other = RelayNodes::overcurrentStage();
    ASSERT_TRUE(other->find(RelayNodes::SettingCurrent)->setText("4"));
    ASSERT_TRUE(other->find(RelayNodes::Curve)->setText("Definite time"));
    ASSERT_TRUE(stage->deserialize(other->serialize()));
    EXPECT_EQ(editor.get_text(), "4");
    EXPECT_FALSE(isRefused(RelayNodes::SettingCurrent));
    EXPECT_EQ(combo(RelayNodes::Curve).get_active_text(), "Definite time");
    EXPECT_FALSE(entry(RelayNodes::TimeMultiplier).is_sensitive());
    EXPECT_EQ(note(RelayNodes::TimeMultiplier), "not used at present");
}

TEST_F(NodeTreeContentPresenterTest, ReadOnlyKeepsTextsReadableAndDropsWhatWasRefused)
{
    auto& editor = entry(RelayNodes::SettingCurrent);
    editor.set_text("6");
    press(editor, GDK_KEY_Return);
    editor.set_text("600");
    container.setIsReadOnly(true);
    EXPECT_EQ(editor.get_text(), "6");
    EXPECT_FALSE(isRefused(RelayNodes::SettingCurrent));
    EXPECT_FALSE(editor.get_editable());
    EXPECT_TRUE(editor.is_sensitive());
    EXPECT_FALSE(KesTest::isSeen(combo(RelayNodes::Curve)));
    auto& shown = entry(RelayNodes::Curve);
    EXPECT_TRUE(KesTest::isSeen(shown));
    EXPECT_EQ(shown.get_text(), combo(RelayNodes::Curve).get_active_text());
}

TEST_F(NodeTreeContentPresenterTest, DiesSafelyWithEditsInProgress)
{
    auto& editor = entry(RelayNodes::SettingCurrent);
    editor.grab_focus();
    editor.set_text("nonsense");
    ASSERT_TRUE(node(RelayNodes::TimeMultiplier).setText("2"));
    presenter.reset();
    KesTest::runPendingEvents();
    ASSERT_TRUE(stage->find(RelayNodes::SettingCurrent)->setText("4"));
    EXPECT_EQ(node(RelayNodes::SettingCurrent).getNumber(), 4.0);
}

} // namespace
