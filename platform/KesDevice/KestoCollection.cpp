#include <KesDevice/KestoCollection.h>

#include <KesCommon/StringHelper.h>
#include <KesDevice/HardwareManagerText.h>

#include <algorithm>
#include <utility>

namespace KesDevice {

KestoCollection::KestoCollection() = default;

KestoCollection::~KestoCollection() = default;

Kes::Result KestoCollection::addKesto(std::unique_ptr<Kesto> kesto)
{
    if (!kesto)
        return false;
    // One gate over the question and the insertion, or two threads could add the same address.
    Kes::SignalGate::Guard gate;
    if (find(kesto->getAddress()))
        return Kes::Result::failure(Kes::StringHelper::format(
            lng::HardwareManager::get("Errors.Kesto.addressTaken"), kesto->getAddress().to_string()));
    const std::shared_ptr<Kesto> owned = std::move(kesto);
    {
        std::lock_guard lock(_ownedMutex);
        _owned.push_back(owned);
    }
    auto result = add(owned.get());
    if (!result)
        _onRemoved(owned.get());
    return result;
}

Kesto* KestoCollection::find(const Kesto::Address& address) const
{
    for (const auto& kesto : lease())
        if (kesto->getAddress() == address)
            return kesto.get();
    return nullptr;
}

std::vector<std::shared_ptr<Kesto>> KestoCollection::lease() const
{
    std::vector<std::shared_ptr<Kesto>> leased;
    std::lock_guard lock(_ownedMutex);
    for (const auto* item : getItems())
        for (const auto& owned : _owned)
            if (owned.get() == item)
                leased.push_back(owned);
    return leased;
}

void KestoCollection::_onRemoved(Kesto* const& kesto)
{
    // Under a lease it may live on, but its address is free at once.
    if (const auto removed = _take(kesto))
        removed->_retire();
}

std::shared_ptr<Kesto> KestoCollection::_take(const Kesto* kesto)
{
    std::shared_ptr<Kesto> taken;
    std::lock_guard lock(_ownedMutex);
    const auto found =
        std::find_if(_owned.begin(), _owned.end(), [=](const auto& owned) { return owned.get() == kesto; });
    if (found != _owned.end()) {
        taken = std::move(*found);
        _owned.erase(found);
    }
    return taken;
}

} // namespace KesDevice
