#include <KesDevice/KestoCollection.h>

#include <KesCommon/StringHelper.h>
#include <KesDevice/HardwareManagerText.h>

#include <utility>

namespace KesDevice {

KestoCollection::KestoCollection() = default;

KestoCollection::~KestoCollection() = default;

Kes::Result KestoCollection::addKesto(std::shared_ptr<Kesto> kesto)
{
    if (!kesto)
        return false;
    // One gate over the question and the insertion, or two threads could add the same address.
    Kes::SignalGate::Guard gate;
    if (find(kesto->getAddress()))
        return Kes::Result::failure(Kes::StringHelper::format(
            lng::HardwareManager::get("Errors.Kesto.addressTaken"), kesto->getAddress().to_string()));
    {
        std::lock_guard lock(_ownedMutex);
        _owned[kesto.get()] = kesto;
    }
    auto result = add(kesto.get());
    if (!result)
        _onRemoved(kesto.get());
    return result;
}

std::shared_ptr<Kesto> KestoCollection::find(const Kesto::Address& address) const
{
    for (auto& kesto : lease())
        if (kesto->getAddress() == address)
            return kesto;
    return nullptr;
}

std::vector<std::shared_ptr<Kesto>> KestoCollection::lease() const
{
    std::vector<std::shared_ptr<Kesto>> leased;
    std::lock_guard lock(_ownedMutex);
    for (const auto* item : getItems())
        if (const auto owned = _owned.find(item); owned != _owned.end())
            leased.push_back(owned->second);
    return leased;
}

void KestoCollection::_onRemoved(Kesto* const& kesto)
{
    decltype(_owned)::node_type removed;
    {
        std::lock_guard lock(_ownedMutex);
        removed = _owned.extract(kesto);
    }
    // Under a lease it may live on, but its address is free at once.
    if (removed)
        removed.mapped()->_retire();
}

} // namespace KesDevice
