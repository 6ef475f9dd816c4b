#include <Overcurrent/presenter/OvercurrentPresenter.h>

#include <KesProgram/archive/ArchiveManager.h>

#include <support/ProgramRunTest.h>

using namespace Overcurrent;
using KesTest::waitFor;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class WindowTest : public KesTest::ProgramWindowTest<OvercurrentModel, OvercurrentPresenter> {
protected:
    Gtk::Entry& entry(const std::string& accessibleName)
    {
        Gtk::Entry* found = nullptr;
        const auto find = [&] {
            for (auto* entry :
                 KesTest::findWidgets<Gtk::Entry>(dynamic_cast<Gtk::Widget&>(*presenter.getView())))
                if (entry->get_accessible()->get_name() == accessibleName)
                    found = entry;
            return found != nullptr;
        };
        if (!waitFor(find))
            throw std::runtime_error("no entry " + accessibleName);
        return *found;
    }
};

} // namespace

TEST_F(WindowTest, AFileFromTheCommandLineNeedsNoAnswerAboutAnUntouchedDocument)
{
    model.setSpeed(5000);
    ASSERT_TRUE(model.startTest());
    ASSERT_TRUE(waitFor([&] { return model.getResults() && model.getCanStart(); }));
    const std::string path = home.file("a.kovc");
    ASSERT_TRUE(model.getArchiveManager()->saveAs(path));
    model.getArchiveManager()->create({});
    presenter.openFile(path);
    EXPECT_THAT(dialogs.getMessages(), IsEmpty());
    EXPECT_EQ(model.getResults()->points.size(), 8u);
    // One that has been touched does.
    TestPlan plan;
    plan.multiples = {2, 3};
    ASSERT_TRUE(model.setPlan(plan));
    dialogs.answer(Kes::DialogResult::Cancel);
    presenter.openFile(path);
    EXPECT_EQ(model.getPlan(), plan);
}

TEST_F(WindowTest, MarksAWrongValueAndAsksBeforeItSavesWithoutIt)
{
    ASSERT_TRUE(model.getArchiveManager()->saveAs(home.file("a.kovc")));
    auto& timeout = entry("Time-out");
    timeout.set_text("sixty");
    EXPECT_TRUE(timeout.get_style_context()->has_class("error"));
    EXPECT_EQ(timeout.get_accessible()->get_description(), "Time-out: “sixty” is not a number.");
    entry("Pause before each measurement").set_text("0.7");
    EXPECT_EQ(model.getPlan().pause, 0.7);
    dialogs.answer(Kes::DialogResult::No);
    presenter.saveArchive();
    EXPECT_THAT(dialogs.getTexts().back(), HasSubstr("Time-out: “sixty” is not a number."));
    EXPECT_TRUE(model.getArchiveManager()->isFileChanged());
    dialogs.answer(Kes::DialogResult::Yes);
    presenter.saveArchive();
    EXPECT_FALSE(model.getArchiveManager()->isFileChanged());
    dialogs.answer(Kes::DialogResult::No);
    presenter.saveAsArchive();
    EXPECT_THAT(dialogs.getFiles(), IsEmpty());
    timeout.set_text("45,5");
    EXPECT_FALSE(timeout.get_style_context()->has_class("error"));
    EXPECT_EQ(model.getPlan().timeout, 45.5);
}
