#include <support/GuiTest.h>
#include <support/LiveWidgets.h>

#include <KesMeasureView/ResultTableView.h>

#include <algorithm>

using KesMeasure::Mark;
using KesMeasure::ResultTable;
using KesMeasure::ResultTableView;
using KesTest::waitFor;

namespace {

/// A table of currents in a window.
class ResultTableViewTest : public KesTest::GuiTest {
protected:
    ResultTableViewTest() { window.add(view); }

    Gtk::TreeView& list() { return *KesTest::findWidgets<Gtk::TreeView>(view).front(); }
    std::string cell(unsigned row)
    {
        Glib::ustring text;
        list().get_model()->children()[row].get_value(0, text);
        return text.raw();
    }

    Gtk::Window window;
    ResultTableView view;
    ResultTable table{{{"current", "I, A"}, {"verdict", "Verdict", false}}, {}, {}};
};

} // namespace

TEST_F(ResultTableViewTest, ShowsTheBeginningOfOtherResultsAndFollowsThoseOfATest)
{
    window.show_all();
    const auto rows = [](std::size_t count, const char* current) {
        return std::vector<ResultTable::Row>(count, {{current, "Passed"}, Mark::Passed});
    };
    auto& place = *list().get_vadjustment().get();
    double height = 0.0;
    // Its own head has a place, too.
    const auto isLaidOut = [&] {
        return place.get_upper() > place.get_page_size() && place.get_upper() != height &&
               place.get_page_size() < list().get_height();
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
    EXPECT_TRUE(waitFor([&] { return place.get_value() == 0.0; }));
    // A row that was there before it is measured.
    table.rows[55] = {{"3", "Failed"}, Mark::Failed};
    view.setTable(table);
    EXPECT_TRUE(waitFor([&] { return place.get_value() > 0.0; }));
    EXPECT_EQ(list().get_model()->children().size(), 60u);
    EXPECT_EQ(cell(55), "3");
    table.rows = rows(60, "4");
    view.setTable(table);
    EXPECT_TRUE(waitFor([&] { return place.get_value() == 0.0; }));
}

TEST_F(ResultTableViewTest, ShowsThatThereIsMoreBesideWhatANarrowWindowShows)
{
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
    const auto fill = [&](const char* value) {
        view.setTable({{{"verdict", "Verdict", false}}, {}, {{"Pick-up", value, "Passed", Mark::Passed}}});
        return live.getCount();
    };
    const int filled = fill("1");
    EXPECT_EQ(fill("2"), filled);
}

TEST_F(ResultTableViewTest, OffersToMeasureSelectedRowsAgain)
{
    window.show_all();
    table.rows = {{{"1", "Passed"}, Mark::Passed}, {{"2", "Failed"}, Mark::Failed}, {{"3", ""}}};
    view.setTable(table);
    view.setCommands("", "Everything has been measured.");
    std::vector<std::size_t> repeated;
    view.signalRepeat.connect([&](const std::vector<std::size_t>& rows) { repeated = rows; });
    const auto buttons = KesTest::findWidgets<Gtk::Button>(view);
    auto* repeat = *std::find_if(buttons.begin(), buttons.end(), [](const Gtk::Button* button) {
        return button->get_label() == "Repeat selected";
    });
    const auto selection = list().get_selection();
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
    EXPECT_EQ(list().get_n_columns(), 1u);
    EXPECT_EQ(cell(0), "Planned");
}
