#pragma once

#include <KesDevice/Kesto.h>
#include <KesDevice/KestoPlausibility.h>
#include <KesDevice/KestoReports.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

namespace KesDevice {

/// The inner side of a device: what is known about it, and what becomes of its reports.
///
/// A signal may destroy the device, so every function that emits touches nothing afterwards. Any thread.
class Kesto::Impl : public KesDriver::IKestoLinkListener {
public:
    using OperationError = Kes::Nullable<std::string>;

    Impl(Kesto& kesto, std::unique_ptr<KesDriver::IKestoLink> deviceLink);
    ~Impl() override;

    Kes::Result connect();
    void disconnect();
    /// Disconnects and refuses to connect from then on.
    void retire();
    Kes::Result updateState();

    KesDriver::KestoIdentifer getIdentifer() const;
    OperationError getOperationError() const;
    std::string getDisplayString() const;
    KesDriver::OutputLimits getLimits() const;

    /// Counts the deliberate disconnections: what was found out before the latest one is history.
    unsigned getEpoch() const { return _epoch; }
    void setOperationError(const OperationError& error, unsigned epoch);

    const std::unique_ptr<KesDriver::IKestoLink> link;
    std::atomic<std::size_t> stepCount{0};

    void onInput(const KesDriver::InputEvent& event) override;
    void onStep(const KesDriver::StepEvent& event) override;
    void onSequenceFinished(const KesDriver::SequenceEvent& event) override;
    void onAvary(const KesDriver::KesAvary& avary) override;
    void onConnectionLost() override;

private:
    Kes::Result _open(KesDriver::KestoState& state, unsigned epoch);
    Kes::Result _identify();
    Kes::Result _readState(KesDriver::KestoState& state);
    void _applyState(const KesDriver::KestoState& state, unsigned epoch, unsigned auxDCChange);
    std::string _getNonsenseText() const;
    void _reportNonsense();

    Kesto& _kesto;
    const std::shared_ptr<KestoReports> _reports;
    /// One attempt to connect at a time. Never held while a signal is emitted.
    std::mutex _connecting;
    mutable std::mutex _mutex;
    KesDriver::KestoIdentifer _identifer;
    OperationError _operationError;
    KestoPlausibility::EventFilter _filter;
    bool _nonsenseReported = false;
    std::atomic<unsigned> _epoch{0};
    std::atomic<bool> _retired{false};
};

} // namespace KesDevice
