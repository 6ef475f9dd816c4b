#pragma once

#include <KesDevice/view/BackgroundJobs.h>
#include <KesDevice/view/HardwareDraft.h>

#include <functional>
#include <memory>

namespace KesDevice {

/// Asks devices for their identity and writes it into the draft. GUI thread; the devices are asked on others.
///
/// A device that the edited configuration is connected to is not asked: it takes one connection at a time,
/// and the configuration knows the answer.
class KES_EXPORT DeviceIdentification {
public:
    /// `edited` gives the configuration in use.
    DeviceIdentification(HardwareDraft& draft, BackgroundJobs& jobs,
                         std::function<HardwareManager*()> edited);

    /// Takes over what the edited configuration knows already.
    void adoptKnown();
    /// Returns at once; the draft reports the answer, or why there is none, by
    /// `HardwareDraft::signalChanged`. An answer that comes after the end of this object is dropped.
    void identify(const Kesto::Address& address);

private:
    bool _adopt(const Kesto::Address& address);

    HardwareDraft& _draft;
    BackgroundJobs& _jobs;
    std::function<HardwareManager*()> _edited;
    std::shared_ptr<Kes::LifetimeToken> _token = std::make_shared<Kes::LifetimeToken>();
};

} // namespace KesDevice
