#pragma once

#include <KesDriver/Report.h>
#include <KesMeasure/EmbeddedBench.h>
#include <KesProgram/model/ProgramModel.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <optional>

//! [class]
/// Puts out one ampere until contact 1 of the relay closes, and keeps how long that took.
class PulseModel : public KesProgram::ProgramModel {
public:
    /// The measured time has changed. On the thread that changed it.
    Kes::Signal<void()> signalTimeChanged;

    PulseModel() { _setCanProgramStart(true); }

    /// Milliseconds; none when nothing has been measured. Any thread.
    std::optional<double> getTime() const;
    /// Simulated seconds per real second.
    void setSpeed(double factor) { _bench.setSpeed(factor); }

    std::string getProgramName() override { return "Pulse"; }
    std::string getExtension() override { return "pulse"; }
    void newData(const std::string& fileName) override;
    std::unique_ptr<std::istream> getDataStream() override;
    bool setDataStream(std::istream& stream, bool isRepair) override;
    std::string getDataSummary() override { return getTime() ? "1 result" : ""; }
    bool hasReport() override { return false; }
    KesProgram::RunVerdict getRunVerdict() override { return _verdict; }

protected:
    bool _onPrepareHardware() override;
    void _onStart() override;
    void _onStop() override;

private:
    std::optional<double> _measure(KesDevice::Kesto& kesto);
    void _onReport(const KesDriver::Report& report);
    void _setTime(std::optional<double> time);

    KesMeasure::EmbeddedBench _bench;
    std::atomic<KesProgram::RunVerdict> _verdict{KesProgram::RunVerdict::None};
    /// Guards all below.
    mutable std::mutex _mutex;
    std::condition_variable _woken;
    std::optional<KesDriver::DeviceTime> _begin;
    std::optional<KesDriver::DeviceTime> _closed;
    bool _isEnded = false;
    std::optional<double> _time;
};
//! [class]
