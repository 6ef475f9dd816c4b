#include <support/GuiTest.h>
#include <support/LiveWidgets.h>

#include <KesMeasureView/ResultTableView.h>

#include <algorithm>

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

TEST_F(ResultTableViewTest, ShowsThatThereIsMoreBesideWhatANarrowWindowShows)
{
    Gtk::Window window;
    ResultTableView view;
    window.add(view);
    const std::string wide(100, '8');
    view.setTable({{{"current", wide}, {"verdict", "Verdict", false}},
                   {{{"1", "Passed"}, Mark::Passed}},
                   {{"Pick-up", wide, "Passed", Mark::Passed}}});
    window.set_default_size(300, 300);
    window.show_all();
    for (auto* scroller : KesTest::findWidgets<Gtk::ScrolledWindow>(view)) {
        const auto& bar = *scroller->get_hscrollbar();
        EXPECT_TRUE(waitFor([&] { return bar.get_mapped() && bar.get_height() > 1; }));
        // Not laid over the content, where it is there under the mouse only.
        EXPECT_GE(bar.get_allocation().get_y(),
                  scroller->get_child()->get_allocation().get_y() + scroller->get_child()->get_height());
    }
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

TEST_F(ResultTableViewTest, OffersToMeasureSelectedRowsAgain)
{
    Gtk::Window window;
    ResultTableView view;
    window.add(view);
    window.show_all();
    ResultTable table{{{"current", "I, A"}, {"verdict", "Verdict", false}},
                      {{{"1", "Passed"}, Mark::Passed}, {{"2", "Failed"}, Mark::Failed}, {{"3", ""}}},
                      {}};
    view.setTable(table);
    view.setCommands("", "Everything has been measured.");
    std::vector<std::size_t> repeated;
    view.signalRepeat.connect([&](const std::vector<std::size_t>& rows) { repeated = rows; });
    const auto buttons = KesTest::findWidgets<Gtk::Button>(view);
    auto* repeat = *std::find_if(buttons.begin(), buttons.end(), [](const Gtk::Button* button) {
        return button->get_label() == "Repeat selected";
    });
    const auto selection = KesTest::findWidgets<Gtk::TreeView>(view).front()->get_selection();
    EXPECT_FALSE(repeat->get_sensitive());
    EXPECT_EQ(repeat->get_tooltip_text(), "Select the rows to be measured again.");
    selection->select(Gtk::TreePath("2"));
    EXPECT_FALSE(repeat->get_sensitive()) << "it has not been measured";
    selection->select(Gtk::TreePath("1"));
    selection->select(Gtk::TreePath("0"));
    repeat->clicked();
    EXPECT_THAT(repeated, testing::ElementsAre(0u, 1u));
    // A new result does not take the selection away.
    table.rows[1] = {{"2", "Passed"}, Mark::Passed};
    view.setTable(table);
    EXPECT_EQ(selection->count_selected_rows(), 3);
    view.setCommands("A test is under way.", "");
    EXPECT_FALSE(repeat->get_sensitive());
    EXPECT_EQ(repeat->get_tooltip_text(), "A test is under way.");
    // Another plan has other columns.
    view.setTable({{{"verdict", "Verdict", false}}, {{{""}}}, {}});
    auto* shown = KesTest::findWidgets<Gtk::TreeView>(view).front();
    EXPECT_EQ(shown->get_n_columns(), 1u);
    Glib::ustring text;
    shown->get_model()->children()[0].get_value(0, text);
    EXPECT_EQ(text, "Planned");
}
