#include "support/GuiTest.h"

#include <KesCommon/Signal.h>
#include <KesCommon/ThreadHelper.h>
#include <KesCommonView/NotifyCollectionBasePresenter.h>

#include <gtkmm/label.h>
#include <gtkmm/window.h>

#include <atomic>
#include <memory>
#include <thread>

namespace {

using KesTest::waitFor;

/// What a collection holds pointers to: it lives only until its removal has been announced.
struct Item {
    explicit Item(int value) : number(value) {}
    int number;
    Kes::Signal<void()> changed;
};

class ItemView : public Gtk::Label, public Kes::IView {
public:
    using Gtk::Label::Label;
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
    ItemView _view;
    Kes::UpdateViewGuard _guard;
    Kes::ScopedConnection _changed;
};

using Collection = Kes::NotifyCollection<Item*>;
using Presenter = Kes::NotifyCollectionBasePresenter<Item*, Collection>;

class NotifyCollectionBasePresenterTest : public KesTest::GuiTest {
protected:
    std::unique_ptr<Presenter> makePresenter()
    {
        auto view = std::make_unique<Kes::CollectionBoxView>();
        box = view.get();
        window.add(*box);
        window.show_all();
        return std::make_unique<Presenter>([](Item* item) { return std::make_unique<ItemPresenter>(*item); },
                                           std::move(view));
    }

    std::string getShown()
    {
        std::string texts;
        for (auto* label : KesTest::findWidgets<Gtk::Label>(*box))
            texts += label->get_text() + " ";
        return texts;
    }

    Gtk::Window window;
    Collection collection;
    Kes::CollectionBoxView* box = nullptr;
    std::unique_ptr<Presenter> presenter = makePresenter();
};

TEST_F(NotifyCollectionBasePresenterTest, followsOneCollectionAfterAnother)
{
    Item a(1);
    Item b(2);
    Item c(3);
    ASSERT_TRUE(collection.add(&a));
    presenter->setCollection(&collection);
    ASSERT_TRUE(collection.add(&c) && collection.insert(1, &b));
    EXPECT_EQ(getShown(), "1 2 3 ");
    ASSERT_TRUE(collection.remove(&b));
    EXPECT_EQ(getShown(), "1 3 ");
    Collection other;
    ASSERT_TRUE(other.add(&b));
    presenter->setCollection(&other);
    ASSERT_TRUE(collection.clear());
    EXPECT_EQ(getShown(), "-1 ");
    ASSERT_TRUE(other.clear());
    EXPECT_EQ(getShown(), "");
    presenter->setCollection(nullptr);
}

TEST_F(NotifyCollectionBasePresenterTest, followsChangesOfAnotherThreadWhileTheWindowRedraws)
{
    presenter->setCollection(&collection);
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
            faults += collection.remove(items[2].get()) ? 0 : 1;
            // Its presenter has gone when the removal has been announced.
            faults += items[2]->number == -1 ? 0 : 1;
            items.erase(items.begin() + 2);
            faults += collection.clear() ? 0 : 1;
        }
        done = true;
    });
    EXPECT_TRUE(waitFor(
        [&] {
            window.queue_draw();
            return done.load();
        },
        std::chrono::seconds(60)));
    devices.join();
    EXPECT_EQ(faults, 0);
    EXPECT_EQ(getShown(), "");
}

TEST_F(NotifyCollectionBasePresenterTest, diesWhileAnotherThreadChangesTheCollection)
{
    for (int round = 0; round < 20; ++round) {
        presenter.reset();
        presenter = makePresenter();
        presenter->setCollection(&collection);
        std::atomic<int> changes{0};
        std::thread devices([&] {
            Item item(1);
            for (int i = 0; i < 50; ++i) {
                changes += collection.add(&item) ? 1 : 0;
                item.changed.emit();
                changes += collection.remove(&item) ? 1 : 0;
            }
        });
        EXPECT_TRUE(waitFor([&] { return changes > 3; }));
        presenter.reset();
        Kes::ThreadHelper::join(devices);
        EXPECT_EQ(changes, 100);
    }
}

} // namespace
