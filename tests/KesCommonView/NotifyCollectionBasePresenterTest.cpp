#include "support/GuiTest.h"

#include <KesCommon/Signal.h>
#include <KesCommonView/NotifyCollectionBasePresenter.h>
#include <KesCommonView/UpdateView.h>

#include <atomic>
#include <memory>
#include <thread>

namespace {

/// What a collection holds pointers to: it lives only until its removal has been announced.
struct Item {
    explicit Item(int value) : number(value) {}
    int number;
    Kes::Signal<void()> changed;
};

/// Follows its item as a device presenter does, from the item's birth on the screen to its death.
class ItemPresenter : public Kes::IPresenter {
public:
    explicit ItemPresenter(Item& item) : _item(item), _view(std::to_string(item.number))
    {
        _changed = _item.changed.connect(
            [this] { _guard.safeBeginUpdateView([this] { _view.set_text(_view.get_text() + "!"); }); });
    }
    ~ItemPresenter() override { _item.number = -1; }
    Kes::IView* getView() override { return &_view; }

private:
    Item& _item;
    KesTest::LabelView _view;
    Kes::UpdateViewGuard _guard;
    Kes::ScopedConnection _changed;
};

struct NotifyCollectionBasePresenterTest : KesTest::GuiTest {};

TEST_F(NotifyCollectionBasePresenterTest, followsChangesOfAnotherThreadWhileTheWindowRedraws)
{
    using Collection = Kes::NotifyCollection<Item*>;
    Gtk::Window window;
    Collection collection;
    Kes::NotifyCollectionBasePresenter<Item*, Collection> presenter(
        [](Item* item) { return std::make_unique<ItemPresenter>(*item); },
        std::make_unique<Kes::CollectionBoxView>());
    window.add(dynamic_cast<Gtk::Widget&>(*presenter.getView()));
    window.show_all();
    const auto getShown = [&] {
        std::string texts;
        for (auto* label : KesTest::findWidgets<Gtk::Label>(window))
            texts += label->get_text() + " ";
        return texts;
    };
    presenter.setCollection(&collection);
    std::atomic<bool> done{false};
    std::atomic<int> faults{0};
    std::thread devices([&] {
        for (int round = 0; round < 30; ++round) {
            std::vector<std::unique_ptr<Item>> items;
            for (int i = 1; i <= 6; ++i) {
                items.push_back(std::make_unique<Item>(i));
                faults += collection.insert(static_cast<std::size_t>(i / 2), items.back().get()) ? 0 : 1;
                items.back()->changed.emit();
            }
            Kes::waitUpdateView([&] { faults += getShown() == "1! 3! 5! 6! 4! 2! " ? 0 : 1; });
            faults += collection.remove(items[2].get()) ? 0 : 1;
            // Its presenter has gone when the removal has been announced.
            faults += items[2]->number == -1 ? 0 : 1;
            items.erase(items.begin() + 2);
            faults += collection.clear() ? 0 : 1;
        }
        done = true;
    });
    EXPECT_TRUE(KesTest::waitFor(
        [&] {
            window.queue_draw();
            return done.load();
        },
        std::chrono::seconds(60)));
    devices.join();
    EXPECT_EQ(faults, 0);
    EXPECT_EQ(getShown(), "");
}

} // namespace
