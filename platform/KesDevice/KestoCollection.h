#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/NotifyCollection.h>
#include <KesDevice/Kesto.h>

#include <memory>
#include <mutex>
#include <vector>

namespace KesDevice {

/// The devices of a configuration, in order. The configuration owns them: a removed device is destroyed when
/// all listeners have heard of its removal and nobody uses it under a lease any more. Any thread.
class KES_EXPORT KestoCollection : public Kes::NotifyCollection<Kesto*> {
public:
    KestoCollection();
    ~KestoCollection() override;

    /// Takes the device over and puts it at the end. A null one, and one whose address is already in the
    /// collection, are refused.
    Kes::Result addKesto(std::unique_ptr<Kesto> kesto);
    /// Null when no device has the address.
    Kesto* find(const Kesto::Address& address) const;

    /// The devices, kept alive as long as the result is, for a thread that uses them while others may remove
    /// them.
    std::vector<std::shared_ptr<Kesto>> lease() const;

protected:
    void _onRemoved(Kesto* const& kesto) override;

private:
    std::shared_ptr<Kesto> _take(const Kesto* kesto);

    mutable std::mutex _ownedMutex;
    std::vector<std::shared_ptr<Kesto>> _owned;
};

} // namespace KesDevice
