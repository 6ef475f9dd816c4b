#include <Overcurrent/presenter/OvercurrentPresenter.h>

#include <KesProgram/archive/ArchiveManager.h>

#include <support/GuiTest.h>
#include <support/TemporaryHome.h>

using namespace Overcurrent;
using KesTest::waitFor;

class WindowTest : public KesTest::GuiTest {};

TEST_F(WindowTest, AFileFromTheCommandLineNeedsNoAnswerAboutAnUntouchedDocument)
{
    const KesTest::TemporaryHome home;
    OvercurrentModel model;
    OvercurrentPresenter presenter(model);
    bool isClosed = false;
    presenter.signalClosed.connect([&] { isClosed = true; });
    model.setSpeed(5000);
    presenter.open(nullptr);
    ASSERT_TRUE(model.startTest());
    ASSERT_TRUE(waitFor([&] { return model.getResults() && model.getCanStart(); }));
    const std::string path = home.file("a.kovc");
    ASSERT_TRUE(model.getArchiveManager()->saveAs(path));
    model.getArchiveManager()->create({});
    presenter.openFile(path);
    EXPECT_THAT(dialogs.getMessages(), testing::IsEmpty());
    EXPECT_EQ(model.getResults()->points.size(), 8u);
    // One that has been touched does.
    TestPlan plan;
    plan.multiples = {2, 3};
    ASSERT_TRUE(model.setPlan(plan));
    dialogs.answer(Kes::DialogResult::Cancel);
    presenter.openFile(path);
    EXPECT_EQ(model.getPlan(), plan);

    dialogs.answer(Kes::DialogResult::No);
    presenter.requestClose();
    EXPECT_TRUE(waitFor([&] { return isClosed; }));
}
