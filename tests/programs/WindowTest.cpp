#include <Overcurrent/presenter/OvercurrentPresenter.h>

#include <KesCommon/Directories.h>
#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/recovery/RecoveryStore.h>

#include <support/GuiTest.h>
#include <support/LiveWidgets.h>
#include <support/TemporaryHome.h>

#include <atkmm/object.h>
#include <gtkmm/entry.h>

#include <filesystem>
#include <sstream>

using namespace Overcurrent;
using KesTest::waitFor;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

/// The program with its window; unsaved changes are dropped in the end.
class WindowTest : public KesTest::GuiTest {
protected:
    WindowTest()
    {
        model.setSpeed(5000);
        presenter.signalClosed.connect([this] { isClosed = true; });
        presenter.open(nullptr);
    }
    ~WindowTest() override
    {
        dialogs.answer(Kes::DialogResult::No);
        presenter.requestClose();
        EXPECT_TRUE(waitFor([this] { return isClosed; }));
    }

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

    KesTest::TemporaryHome home;
    OvercurrentModel model;
    OvercurrentPresenter presenter{model};
    bool isClosed = false;
};

} // namespace

TEST_F(WindowTest, AFileFromTheCommandLineNeedsNoAnswerAboutAnUntouchedDocument)
{
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

TEST_F(WindowTest, WhatARunHasMeasuredIsCopiedWhileItRuns)
{
    model.setSpeed(50);
    ASSERT_TRUE(model.startTest());
    ASSERT_TRUE(waitFor([this] {
        const auto results = model.getResults();
        return results && results->points.size() >= 2 && presenter.writeRecoveryCopy(std::chrono::seconds(5));
    }));
    ASSERT_TRUE(model.isRunning());
    std::filesystem::copy(Kes::getKesCrossAppStateDir() + "OvercurrentModel.OvercurrentTests/recovery/",
                          home.file("copies/"));
    auto lost = KesProgram::RecoveryStore(home.file("copies/")).findLost();
    ASSERT_EQ(lost.size(), 1U);
    const auto& copy = lost.front().getCopy();
    EXPECT_THAT(copy.holds, testing::MatchesRegex("[2-9] results of 20..-..-.. ..:.., not saved"));
    std::istringstream stream(copy.bytes);
    OvercurrentModel other;
    EXPECT_TRUE(other.setDataStream(stream, false));
    EXPECT_GE(other.getResults()->points.size(), 2U);
    model.stopTest();
    EXPECT_TRUE(waitFor([this] { return model.getCanStart(); }));
}
