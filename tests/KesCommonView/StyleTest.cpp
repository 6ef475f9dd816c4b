#include "support/GuiTest.h"
#include "support/TemporaryHome.h"

#include <KesCommon/Directories.h>
#include <KesCommon/Log.h>
#include <KesCommonView/Style.h>

namespace {

using KesTest::waitFor;
using KesView::Style;

class StyleTest : public KesTest::GuiTest {
protected:
    StyleTest()
    {
        _previous = KesLog::Log::setObserver(
            [this](KesLog::Log::Level, const std::string& text) { logged.push_back(text); });
        window.add(label);
        window.show_all();
    }
    ~StyleTest() override { KesLog::Log::setObserver(std::move(_previous)); }

    void setSheet(const std::string& text)
    {
        KesTest::writeFile(home.file("sheet.css"), text);
        Style::setStyle(std::filesystem::relative(home.file("sheet.css"), Kes::getThemesDir()).string());
    }

    KesTest::TemporaryHome home;
    Gtk::Window window;
    Gtk::Label label{"Text"};
    std::vector<std::string> logged;

private:
    KesLog::Log::Observer _previous;
};

TEST_F(StyleTest, sheetsOfTheFamilyLoadWithoutAWarningAndHaveTheirPictures)
{
    int pictures = 0;
    for (const auto* name :
         {"style.css", "Icons.css", "KesTreeManager/KesTree.css", "KesTreeRelay/KesTreeRelay.css"}) {
        Style::setStyle(name);
        const std::filesystem::path sheet = Kes::getThemesDir() + name;
        const auto text = KesTest::readFile(sheet);
        for (auto at = text.find("url("); at != std::string::npos;
             at = text.find("url(", at + 1), ++pictures) {
            const auto begin = text.find('"', at) + 1;
            const auto picture = text.substr(begin, text.find('"', begin) - begin);
            EXPECT_TRUE(std::filesystem::exists(sheet.parent_path() / picture)) << name << picture;
        }
    }
    EXPECT_GE(pictures, 9);
    EXPECT_THAT(logged, testing::IsEmpty());
}

TEST_F(StyleTest, missingSheetAndBrokenRuleWarnOnceAndTheOthersWork)
{
    Style::setStyle("none.css");
    Style::setStyle("none.css");
    EXPECT_THAT(std::exchange(logged, {}), testing::ElementsAre(testing::HasSubstr("none.css")));
    setSheet(".brokenTest { no-such-property: 1; }\n.wideTest { min-width: 321px; }\n");
    EXPECT_THAT(logged, testing::ElementsAre(testing::HasSubstr("line 1")));
    label.get_style_context()->add_class("wideTest");
    EXPECT_TRUE(waitFor([&] { return KesTest::widthOf(label) == 321; }));
}

} // namespace
