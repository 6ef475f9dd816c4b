#pragma once

#include <KesCommon/Connection.h>
#include <KesCommon/NotifyCollection.h>
#include <KesCommonView/CollectionBoxView.h>
#include <KesCommonView/IPresenter.h>
#include <KesCommonView/UpdateViewGuard.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

namespace Kes {

/// Follows a notifying collection with one child presenter per item, whose views stand in the order of the
/// items. It owns the child presenters and the view; the items belong to the collection. Items are told
/// apart by their index only, so the same one may be in the collection several times.
///
/// `T` is copied freely: a pointer or a small value. `Collection` has what is used of `NotifyCollection`:
/// `getItems`, `signalInserted` and `signalRemoved`, with the same promises.
///
/// Made and destroyed on the GUI thread; the collection may change on any thread. Every change of the view
/// runs on the GUI thread and the changing thread waits for it, so that an item may be destroyed as soon as
/// its removal has been announced. The GUI thread therefore never simply blocks on a thread that changes
/// the collection: its waits are those of `WaitCondition` and `Worker`.
template <typename T, typename Collection = NotifyCollection<T>>
class NotifyCollectionBasePresenter : public IPresenter {
public:
    /// Makes the presenter of an item, never null. Called on the GUI thread, for items that a collection
    /// has already and for new ones, while no other thread can change the collection. It must not change
    /// the collection either.
    using ItemFactory = std::function<std::unique_ptr<IPresenter>(T)>;

    /// The view is not null. Nothing is shown until `setCollection`.
    NotifyCollectionBasePresenter(ItemFactory factory, std::unique_ptr<ICollectionView> view)
        : _factory(std::move(factory)), _view(std::move(view))
    {}
    ~NotifyCollectionBasePresenter() override
    {
        // An item may die as soon as its removal can be announced again: its presenter goes before.
        SignalGate::Guard gate;
        setCollection(nullptr);
    }

    IView* getView() override { return _view.get(); }

    /// Shows the items of the collection (null: none) and follows it. The child presenters of the
    /// collection before are destroyed first. The collection outlives the presenter or is replaced by
    /// another call. GUI thread.
    void setCollection(Collection* collection)
    {
        SignalGate::Guard gate;
        _inserted.disconnect();
        _removed.disconnect();
        while (!_items.empty())
            _remove(_items.size() - 1);
        if (!collection)
            return;
        for (const T& item : collection->getItems())
            _insert(_items.size(), item);
        _inserted = collection->signalInserted.connect([this](std::size_t index, const T& item) {
            _guard.safeWaitUpdateView([this, index, &item] { _insert(index, item); });
        });
        _removed = collection->signalRemoved.connect([this](std::size_t index, const T&) {
            _guard.safeWaitUpdateView([this, index] { _remove(index); });
        });
    }

private:
    void _insert(std::size_t index, const T& item)
    {
        index = std::min(index, _items.size());
        auto presenter = _factory(item);
        _view->insertView(index, presenter->getView());
        _items.insert(_items.begin() + static_cast<std::ptrdiff_t>(index), std::move(presenter));
    }
    /// The view is taken out first, as its presenter owns it.
    void _remove(std::size_t index)
    {
        if (index >= _items.size())
            return;
        const auto item = _items.begin() + static_cast<std::ptrdiff_t>(index);
        _view->removeView((*item)->getView());
        _items.erase(item);
    }

    ItemFactory _factory;
    std::unique_ptr<ICollectionView> _view;
    /// In the order of the collection.
    std::vector<std::unique_ptr<IPresenter>> _items;
    /// Its end drops updates that are still queued.
    UpdateViewGuard _guard;
    ScopedConnection _inserted;
    ScopedConnection _removed;
};

} // namespace Kes
