#pragma once

#include <algorithm>
#include <utility>

namespace Kes {

template <typename T>
Result NotifyCollection<T>::insert(std::size_t index, const T& item)
{
    SignalGate::Guard gate;
    if (_readOnly)
        return collectionReadOnlyError();
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
    SignalGate::Guard gate;
    if (_readOnly)
        return collectionReadOnlyError();
    if (index < size())
        _removeAt(index);
    return true;
}

template <typename T>
Result NotifyCollection<T>::remove(const T& item)
{
    SignalGate::Guard gate;
    if (_readOnly)
        return collectionReadOnlyError();
    const auto items = getItems();
    const auto found = std::find(items.begin(), items.end(), item);
    if (found != items.end())
        _removeAt(static_cast<std::size_t>(found - items.begin()));
    return true;
}

template <typename T>
Result NotifyCollection<T>::clear()
{
    SignalGate::Guard gate;
    if (_readOnly)
        return collectionReadOnlyError();
    signalReset.emit();
    for (auto index = size(); index-- > 0;)
        if (index < size())
            _removeAt(index);
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
