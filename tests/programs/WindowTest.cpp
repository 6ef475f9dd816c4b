#include <Overcurrent/presenter/OvercurrentPresenter.h>
#include <Overcurrent/view/PlanView.h>

#include <KesProgram/archive/ArchiveManager.h>

#include <support/GuiTest.h>
#include <support/TemporaryHome.h>

#include <atkmm/object.h>
#include <gmock/gmock.h>
#include <gtkmm/entry.h>
#include <gtkmm/label.h>
#include <gtkmm/treeview.h>
#include <gtkmm/window.h>

using namespace Overcurrent;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// The program's window as a user has it before the eyes.
class WindowTest : public KesTest::GuiTest {
protected:
    WindowTest()
    {
        model.setSpeed(5000);
        presenter.signalClosed.connect([this] { isClosed = true; });
        presenter.open(nullptr);
        EXPECT_TRUE(KesTest::waitFor([this] { return !KesTest::findWidgets<PlanView>(window()).empty(); }));
        KesTest::runPendingEvents();
    }
    ~WindowTest() override
    {
        if (isClosed)
            return;
        dialogs.answer(Kes::DialogResult::No);
        presenter.requestClose();
        EXPECT_TRUE(KesTest::waitFor([this] { return isClosed; }));
    }

    Gtk::Window& window() { return dynamic_cast<Gtk::Window&>(*presenter.getView()); }
    Gtk::Label& label(const std::string& styleClass)
    {
        return dynamic_cast<Gtk::Label&>(*KesTest::findByClass(window(), styleClass));
    }
    Gtk::Entry& entry(const std::string& accessibleName)
    {
        for (auto* found : KesTest::findWidgets<Gtk::Entry>(window()))
            if (found->get_accessible()->get_name() == accessibleName)
                return *found;
        throw std::runtime_error("no entry " + accessibleName);
    }
    Gtk::TreeView& table() { return *KesTest::findWidgets<Gtk::TreeView>(window()).front(); }
    bool run()
    {
        return model.startTest() &&
               KesTest::waitFor([this] { return model.getRunVerdict() != KesProgram::RunVerdict::None; }) &&
               KesTest::waitFor([this] { return model.getCanStart(); });
    }

    KesTest::TemporaryHome home;
    OvercurrentModel model;
    OvercurrentPresenter presenter{model};
    bool isClosed = false;
};

} // namespace

TEST_F(WindowTest, ShowsWhatIsMeasured)
{
    EXPECT_FALSE(KesTest::isSeen(label("notice-simulated")));
    ASSERT_TRUE(run());
    ASSERT_TRUE(KesTest::waitFor([this] { return table().get_model()->children().size() == 8; }));
    ASSERT_TRUE(KesTest::waitFor(
        [this] { return label("outcome-text").get_text().raw().find("Test passed") != std::string::npos; }));
    EXPECT_TRUE(KesTest::isSeen(label("notice-simulated")));
}

TEST_F(WindowTest, RefusesAPlanInPlaceAndStartsNothingWithIt)
{
    auto& timeout = entry("Time-out");
    timeout.set_text("sixty");
    EXPECT_EQ(label("plan-error").get_text(), "\"sixty\" is not a number.");
    EXPECT_TRUE(KesTest::isSeen(label("plan-error")));
    dialogs.answer(Kes::DialogResult::Ok);
    EXPECT_FALSE(model.startTest());
    EXPECT_THAT(dialogs.getTexts().back(), HasSubstr("\"sixty\" is not a number."));
    timeout.set_text("45,5");
    EXPECT_FALSE(KesTest::isSeen(label("plan-error")));
    EXPECT_EQ(model.getPlan().timeout, 45.5);
    // The user's own way of writing stays.
}

TEST_F(WindowTest, AFileFromTheCommandLineNeedsNoAnswerAboutAnUntouchedDocument)
{
    ASSERT_TRUE(run());
    const std::string path = home.file("a.kovc");
    ASSERT_TRUE(model.getArchiveManager()->saveAs(path));
    model.getArchiveManager()->create({});
    presenter.openFile(path);
    EXPECT_THAT(dialogs.getMessages(), IsEmpty());
    EXPECT_EQ(model.getResults()->points.size(), 8u);
    // One that has been touched does.
    entry("Points").set_text("2 3");
    dialogs.answer(Kes::DialogResult::Cancel);
    presenter.openFile(path);
    EXPECT_EQ(model.getPlan().multiples.size(), 2u);
}
