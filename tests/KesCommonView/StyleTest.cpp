#include "support/GuiTest.h"
#include "support/TemporaryHome.h"

#include <KesCommon/Directories.h>
#include <KesCommon/Log.h>
#include <KesCommonView/Style.h>
#include <KesCommonView/StyleZoomHelper.h>
#include <KesCommonView/Window.h>

#include <gtkmm/label.h>
#include <gtkmm/settings.h>

#include <filesystem>
#include <set>

namespace {

using KesTest::waitFor;
using KesView::Style;
using KesView::StyleZoomHelper;

class StyleTest : public KesTest::GuiTest {
protected:
    StyleTest()
    {
        _previous = KesLog::Log::setObserver(
            [this](KesLog::Log::Level, const std::string& text) { logged.push_back(text); });
    }
    ~StyleTest() override
    {
        KesLog::Log::setObserver(std::move(_previous));
        StyleZoomHelper::zoomDefault();
    }

    /// The file as a name below the themes directory.
    static std::string nameOf(const std::string& path)
    {
        return std::filesystem::relative(path, Kes::getThemesDir()).string();
    }

    std::vector<std::string> logged;

private:
    KesLog::Log::Observer _previous;
};

TEST_F(StyleTest, sheetsOfTheFamilyLoadWithoutAWarning)
{
    for (const auto* name : {"style.css", "KesTreeManager/KesTree.css", "KesTreeRelay/KesTreeRelay.css"})
        Style::setStyle(name);
    Kes::Window window;
    window.get_style_context()->add_class("Window");
    window.show();
    EXPECT_TRUE(waitFor([&] { return window.get_mapped(); }));
    EXPECT_THAT(logged, testing::IsEmpty());
}

TEST_F(StyleTest, missingSheetWarnsOnce)
{
    // Once per process: a name of its own for each repetition of the test.
    static int repetition = 0;
    const auto name = "none" + std::to_string(++repetition) + ".css";
    Style::setStyle(name);
    Style::setStyle(name);
    ASSERT_EQ(logged.size(), 1u);
    EXPECT_THAT(logged[0], testing::HasSubstr(name));
}

TEST_F(StyleTest, brokenRuleWarnsAndTheOthersWork)
{
    KesTest::TemporaryHome home;
    KesTest::writeFile(home.getPath() / "broken.css",
                       ".brokenTest { no-such-property: 1; }\n.wideTest { min-width: 321px; }\n");
    Style::setStyle(nameOf(home.file("broken.css")));
    ASSERT_EQ(logged.size(), 1u);
    EXPECT_THAT(logged[0], testing::HasSubstr("line 1"));
    Gtk::Label label("x");
    label.get_style_context()->add_class("wideTest");
    label.show();
    int minimum = 0;
    int natural = 0;
    label.get_preferred_width(minimum, natural);
    EXPECT_EQ(minimum, 321);
}

TEST_F(StyleTest, everyPictureOfTheSheetsIsThere)
{
    std::set<std::string> missing;
    int pictures = 0;
    for (const auto* name : {"style.css", "KesTreeManager/KesTree.css", "KesTreeRelay/KesTreeRelay.css"}) {
        const std::filesystem::path sheet = Kes::getThemesDir() + name;
        const auto text = KesTest::readFile(sheet);
        for (auto at = text.find("url("); at != std::string::npos; at = text.find("url(", at + 1)) {
            const auto begin = text.find('"', at) + 1;
            const auto path = sheet.parent_path() / text.substr(begin, text.find('"', begin) - begin);
            ++pictures;
            if (!std::filesystem::exists(path))
                missing.insert(path);
        }
    }
    EXPECT_GE(pictures, 9);
    EXPECT_THAT(missing, testing::IsEmpty());
}

TEST_F(StyleTest, zoomScalesTextsAndEmLengthsWithinItsLimits)
{
    KesTest::TemporaryHome home;
    KesTest::writeFile(home.getPath() / "em.css", ".emTest { min-width: 10em; }\n");
    Style::setStyle(nameOf(home.file("em.css")));
    Gtk::Window window;
    Gtk::Label label("Text");
    label.get_style_context()->add_class("emTest");
    window.add(label);
    window.show_all();
    auto getSize = [&] {
        Gtk::Requisition minimum;
        Gtk::Requisition natural;
        label.get_preferred_size(minimum, natural);
        return std::pair(minimum.width, minimum.height);
    };
    const auto normal = getSize();
    for (int i = 0; i < 30; ++i)
        StyleZoomHelper::zoomIn();
    EXPECT_EQ(StyleZoomHelper::getZoom(), 200);
    EXPECT_TRUE(waitFor([&] { return getSize().first >= 2 * normal.first - 2; }))
        << getSize().first << " " << normal.first;
    EXPECT_GT(getSize().second, normal.second * 3 / 2);
    StyleZoomHelper::zoomDefault();
    EXPECT_EQ(StyleZoomHelper::getZoom(), 100);
    EXPECT_TRUE(waitFor([&] { return getSize() == normal; }))
        << getSize().first << "x" << getSize().second << " was " << normal.first << "x" << normal.second;
    for (int i = 0; i < 30; ++i)
        StyleZoomHelper::zoomOut();
    EXPECT_EQ(StyleZoomHelper::getZoom(), 50);
    EXPECT_TRUE(waitFor([&] { return getSize().first < normal.first; }));
}

} // namespace
