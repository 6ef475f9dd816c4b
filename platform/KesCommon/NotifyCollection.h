#pragma once

#include <KesCommon/Result.h>
#include <KesCommon/Signal.h>

#include <atomic>
#include <cstddef>
#include <mutex>
#include <vector>

namespace Kes {

/// The text for a change refused by a read-only collection: the text of "error.ReadOnly".
KES_EXPORT Result collectionReadOnlyError();

/// An ordered collection that reports every change to its listeners.
///
/// Any thread may read and change it. A change and its notifications pass the signal gate as one unit,
/// so listeners hear of changes in the order in which they happened; a listener that wants to take over
/// the present items and then follow the changes does both while it holds `SignalGate::Guard`.
template <typename T>
class NotifyCollection {
public:
    NotifyCollection() = default;
    NotifyCollection(const NotifyCollection&) = delete;
    NotifyCollection& operator=(const NotifyCollection&) = delete;
    virtual ~NotifyCollection() = default;

    /// An item has been inserted at the index. Emitted on the changing thread.
    Signal<void(std::size_t, const T&)> signalInserted;
    /// The item that was at the index has been removed; it is still alive. Emitted on the changing thread.
    Signal<void(std::size_t, const T&)> signalRemoved;
    /// The collection is about to be emptied by `clear()`; the removals follow, last item first.
    Signal<void()> signalReset;

    bool empty() const { return size() == 0; }
    std::size_t size() const
    {
        std::lock_guard lock(_mutex);
        return _items.size();
    }
    /// A copy of the items, in order.
    std::vector<T> getItems() const
    {
        std::lock_guard lock(_mutex);
        return _items;
    }
    bool isReadOnly() const { return _readOnly; }
    void setReadOnly(bool readOnly) { _readOnly = readOnly; }

    /// Appends.
    Result add(const T& item) { return insert(static_cast<std::size_t>(-1), item); }
    /// An index past the end appends.
    Result insert(std::size_t index, const T& item);
    /// An index past the end is ignored.
    Result removeAt(std::size_t index);
    /// An item that is not in the collection is ignored.
    Result remove(const T& item);
    /// Removes the items that it finds, last first; what a listener appends meanwhile stays.
    Result clear();

protected:
    /// Called after all listeners have heard of a removal; the owner of the items releases it here.
    virtual void _onRemoved(const T& item) { (void)item; }

private:
    void _removeAt(std::size_t index);

    mutable std::mutex _mutex;
    std::vector<T> _items;
    std::atomic<bool> _readOnly{false};
};

} // namespace Kes

#include <KesCommon/NotifyCollection.inl>
