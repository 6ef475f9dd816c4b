#include "support/GuiTest.h"
#include "support/LanguageScope.h"

#include "../docs/examples/pulse/TimeView.h"

namespace KesTest {

namespace {

/// The program of the first page is what new ones begin with.
TEST_F(GuiTest, TheExampleShowsItsTimeAsTheLanguageWritesNumbers)
{
    const std::pair<lng::Language, const char*> sentences[] = {
        {lng::English, "The contact closed after 25.125 ms."},
        {lng::Russian, "Контакт замкнулся через 25,125 мс."}};
    for (const auto& [language, sentence] : sentences) {
        const LanguageScope scope(language);
        TimeView view;
        view.setTime(25.125);
        EXPECT_EQ(view.get_text(), sentence);
    }
}

} // namespace

} // namespace KesTest
