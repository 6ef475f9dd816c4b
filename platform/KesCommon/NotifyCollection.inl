#pragma once

#include <algorithm>
#include <utility>

namespace Kes {

template <typename T>
Result NotifyCollection<T>::insert(std::size_t index, const T& item)
{
    if (_readOnly)
        return collectionReadOnlyError();
    SignalGate::Guard gate;
    {
        std::lock_guard lock(_mutex);
        index = std::min(index, _items.size());
        _items.insert(_items.begin() + static_cast<std::ptrdiff_t>(index), item);
    }
    signalInserted.emit(index, item);
    return true;
}

template <typename T>
Result NotifyCollection<T>::removeAt(std::size_t index)
{
    if (_readOnly)
        return collectionReadOnlyError();
    SignalGate::Guard gate;
    if (index < size())
        _removeAt(index);
    return true;
}

template <typename T>
Result NotifyCollection<T>::remove(const T& item)
{
    if (_readOnly)
        return collectionReadOnlyError();
    SignalGate::Guard gate;
    const auto items = getItems();
    const auto found = std::find(items.begin(), items.end(), item);
    if (found != items.end())
        _removeAt(static_cast<std::size_t>(found - items.begin()));
    return true;
}

template <typename T>
Result NotifyCollection<T>::clear()
{
    if (_readOnly)
        return collectionReadOnlyError();
    SignalGate::Guard gate;
    signalReset.emit();
    while (!empty())
        _removeAt(size() - 1);
    return true;
}

template <typename T>
void NotifyCollection<T>::_removeAt(std::size_t index)
{
    T item = [&] {
        std::lock_guard lock(_mutex);
        const auto position = _items.begin() + static_cast<std::ptrdiff_t>(index);
        T taken = std::move(*position);
        _items.erase(position);
        return taken;
    }();
    signalRemoved.emit(index, item);
    _onRemoved(item);
}

} // namespace Kes
