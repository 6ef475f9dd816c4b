#include "support/GuiTest.h"

#include <KesCommonView/NotifyCollectionBasePresenter.h>
#include <KesCommonView/UpdateView.h>

#include <atomic>
#include <thread>

namespace {

/// Shows its number, and takes it away at its own end.
class NumberPresenter : public Kes::IPresenter {
public:
    explicit NumberPresenter(int& number) : _number(number), _view(std::to_string(number)) {}
    ~NumberPresenter() override { _number = 0; }
    Kes::IView* getView() override { return &_view; }

private:
    int& _number;
    KesTest::LabelView _view;
};

struct NotifyCollectionBasePresenterTest : KesTest::GuiTest {};

TEST_F(NotifyCollectionBasePresenterTest, changesOfAnotherThreadHaveTakenPlaceWhenTheyReturn)
{
    using Collection = Kes::NotifyCollection<int*>;
    Collection collection;
    Kes::NotifyCollectionBasePresenter<int*, Collection> presenter(
        [](int* number) { return std::make_unique<NumberPresenter>(*number); },
        std::make_unique<Kes::CollectionBoxView>());
    const auto getShown = [&] {
        std::string texts;
        for (auto* label : KesTest::findWidgets<Gtk::Label>(dynamic_cast<Gtk::Widget&>(*presenter.getView())))
            texts += label->get_text() + " ";
        return texts;
    };
    presenter.setCollection(&collection);
    int numbers[]{1, 2, 3, 4, 5, 6};
    std::atomic<bool> done{false};
    std::thread devices([&] {
        for (std::size_t i = 0; i < std::size(numbers); ++i)
            EXPECT_TRUE(collection.insert((i + 1) / 2, &numbers[i]));
        Kes::waitUpdateView([&] { EXPECT_EQ(getShown(), "1 3 5 6 4 2 "); });
        EXPECT_TRUE(collection.remove(&numbers[2]));
        EXPECT_EQ(numbers[2], 0) << "its presenter has gone when the removal has been announced";
        Kes::waitUpdateView([&] { EXPECT_EQ(getShown(), "1 5 6 4 2 "); });
        EXPECT_TRUE(collection.clear());
        done = true;
    });
    EXPECT_TRUE(KesTest::waitFor([&] { return done.load(); }));
    devices.join();
    EXPECT_EQ(getShown(), "");
}

} // namespace
