#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/NotifyCollection.h>
#include <KesDevice/Kesto.h>

#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace KesDevice {

/// The devices of a configuration, in order. A removed device is disconnected when all listeners have heard
/// of its removal, and is destroyed when the last lease of it has ended. Any thread.
class KES_EXPORT KestoCollection : public Kes::NotifyCollection<Kesto*> {
public:
    KestoCollection();
    ~KestoCollection() override;

    /// Puts the device at the end. A null one, and one whose address is already in the collection, are
    /// refused.
    Kes::Result addKesto(std::shared_ptr<Kesto> kesto);
    /// Null when no device has the address.
    std::shared_ptr<Kesto> find(const Kesto::Address& address) const;

    /// The devices, kept alive as long as the result is, for a thread that uses them while others may remove
    /// them.
    std::vector<std::shared_ptr<Kesto>> lease() const;

protected:
    void _onRemoved(Kesto* const& kesto) override;

private:
    mutable std::mutex _ownedMutex;
    /// The collection's own share in each device.
    std::map<const Kesto*, std::shared_ptr<Kesto>> _owned;
};

} // namespace KesDevice
