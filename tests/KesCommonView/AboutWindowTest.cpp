#include "support/GuiTest.h"
#include "support/LanguageScope.h"

#include <KesCommonView/AboutView.h>
#include <KesCommonView/AboutWindowActivatorPresenter.h>

#include <gtkmm/window.h>

namespace {

class AboutWindow : public KesTest::GuiTest {};

TEST_F(AboutWindow, KeepsTheTitleOfTheProgramsLanguageWhenItIsAskedForAgain)
{
    const KesTest::LanguageScope russian(lng::Russian);
    Kes::AboutView alone;
    alone.setProgramName("Program");
    EXPECT_EQ(alone.get_title(), "О программе");
    Kes::AboutWindowActivatorPresenter about;
    for (const char* version : {"1.0", "1.1"}) {
        about.show(nullptr, "Program", version);
        const auto* const window = dynamic_cast<Gtk::Window*>(about.getView());
        ASSERT_NE(window, nullptr);
        EXPECT_EQ(window->get_title(), "О программе");
    }
}

} // namespace
