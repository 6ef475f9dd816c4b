#include <support/GuiTest.h>
#include <support/LiveWidgets.h>

#include <KesMeasureView/ResultTableView.h>

using KesMeasure::Mark;
using KesMeasure::ResultTable;
using KesMeasure::ResultTableView;
using KesTest::waitFor;

using ResultTableViewTest = KesTest::GuiTest;

TEST_F(ResultTableViewTest, ShowsTheBeginningOfOtherResultsAndFollowsThoseOfATest)
{
    Gtk::Window window;
    ResultTableView view;
    window.add(view);
    window.show_all();
    ResultTable table{{{"current", "I, A"}, {"verdict", "Verdict", false}}, {}, {}};
    const auto rows = [](std::size_t count, const char* current) {
        return std::vector<ResultTable::Row>(count, {{current, "Passed"}, Mark::Passed});
    };
    auto& place = *KesTest::findWidgets<Gtk::TreeView>(view).front()->get_vadjustment().get();
    double height = 0.0;
    const auto isLaidOut = [&] {
        return place.get_upper() > place.get_page_size() && place.get_upper() != height;
    };
    const auto show = [&](const std::vector<ResultTable::Row>& shown) {
        height = place.get_upper();
        table.rows = shown;
        view.setTable(table);
        EXPECT_TRUE(waitFor(isLaidOut));
        KesTest::runPendingEvents();
    };
    show(rows(50, "1"));
    EXPECT_EQ(place.get_value(), 0.0);
    show(rows(51, "1"));
    EXPECT_TRUE(waitFor([&] { return place.get_value() == place.get_upper() - place.get_page_size(); }));
    show(rows(60, "2"));
    EXPECT_EQ(place.get_value(), 0.0);
    // A row that was there before it is measured.
    table.rows[55] = {{"3", "Failed"}, Mark::Failed};
    view.setTable(table);
    EXPECT_TRUE(waitFor([&] { return place.get_value() > 0.0; }));
    const auto shown = KesTest::findWidgets<Gtk::TreeView>(view).front()->get_model()->children();
    EXPECT_EQ(shown.size(), 60u);
    Glib::ustring text;
    shown[55].get_value(0, text);
    EXPECT_EQ(text, "3");
    table.rows = rows(60, "4");
    view.setTable(table);
    EXPECT_TRUE(waitFor([&] { return place.get_value() == 0.0; }));
}

TEST_F(ResultTableViewTest, FreesWhatItShowedWhenItIsFilledAgain)
{
    KesTest::LiveWidgets live;
    ResultTableView view;
    const auto fill = [&](const char* value) {
        view.setTable({{{"verdict", "Verdict", false}}, {}, {{"Pick-up", value, "Passed", Mark::Passed}}});
        return live.getCount();
    };
    const int filled = fill("1");
    EXPECT_EQ(fill("2"), filled);
}
