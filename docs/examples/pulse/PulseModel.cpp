//! [includes]
#include "PulseModel.h"

#include "PulseRelay.h"

#include <KesCommon/NumberText.h>
#include <KesCommon/ObjectErrorHelper.h>
#include <KesProgram/archive/ArchiveHelper.h>

#include <sstream>

using namespace std::chrono_literals;
//! [includes]

//! [test]
void PulseModel::_onStart()
{
    const auto kestos = getHardware()->getKestos().lease();
    const auto time = kestos.empty() ? std::nullopt : _measure(*kestos.front());
    const bool hasFailed = !getHardware()->checkOutput();
    _verdict = hasFailed      ? KesProgram::RunVerdict::Fault
               : !isRunning() ? KesProgram::RunVerdict::Stopped
               : time         ? KesProgram::RunVerdict::Passed
                              : KesProgram::RunVerdict::Failed;
    if (time)
        _setTime(time);
    _finish();
}

void PulseModel::_onStop()
{
    {
        std::lock_guard lock(_mutex);
    }
    _woken.notify_all();
}
//! [test]

//! [measure]
std::optional<double> PulseModel::_measure(KesDevice::Kesto& kesto)
{
    {
        std::lock_guard lock(_mutex);
        _begin.reset();
        _closed.reset();
        _isEnded = false;
    }
    const Kes::ScopedConnection reports =
        kesto.signalReport.connect([this](const KesDriver::Report& report) { _onReport(report); });

    KesDriver::OutputStep pulse;
    pulse.outputs.currents[0].magnitude = 1.0;
    pulse.duration = 1s;
    pulse.endOn = KesDriver::InputCondition{1, true};
    if (const auto result = kesto.runSequence({pulse}); !result) {
        signalMessage.emit(Kes::ObjectErrorHelper::toDisplayString({result.getError()}));
        return std::nullopt;
    }
    std::unique_lock lock(_mutex);
    _woken.wait(lock, [this] { return _isEnded || !isRunning(); });
    if (!_begin || !_closed)
        return std::nullopt;
    return std::chrono::duration<double, std::milli>(*_closed - *_begin).count();
}

void PulseModel::_onReport(const KesDriver::Report& report)
{
    {
        std::lock_guard lock(_mutex);
        if (const auto* step = std::get_if<KesDriver::StepEvent>(&report))
            _begin = step->time;
        else if (const auto* input = std::get_if<KesDriver::InputEvent>(&report);
                 input && input->input == 1 && input->isClosed && input->step)
            _closed = input->time;
        else if (std::holds_alternative<KesDriver::SequenceEvent>(report))
            _isEnded = true;
    }
    _woken.notify_all();
}
//! [measure]

//! [bench]
bool PulseModel::_onPrepareHardware()
{
    _bench.wire(*getHardware(), [] { return std::make_shared<PulseRelay>(); });
    return ProgramModel::_onPrepareHardware();
}
//! [bench]

//! [time]
std::optional<double> PulseModel::getTime() const
{
    std::lock_guard lock(_mutex);
    return _time;
}

void PulseModel::_setTime(std::optional<double> time)
{
    {
        std::lock_guard lock(_mutex);
        _time = time;
    }
    signalTimeChanged.emit();
}
//! [time]

//! [archive]
void PulseModel::newData(const std::string&)
{
    _setTime(std::nullopt);
}

std::unique_ptr<std::istream> PulseModel::getDataStream()
{
    const auto time = getTime();
    KesProgram::ArchiveHelper::DataMap data;
    data["time"] = std::make_unique<std::stringstream>(time ? Kes::NumberText::write(*time) : std::string());
    auto stream = std::make_unique<std::stringstream>();
    KesProgram::ArchiveHelper::packDataToStream(*stream, data, KesProgram::ArchiveHelper::PREFIX);
    return stream;
}

bool PulseModel::setDataStream(std::istream& stream, bool)
{
    KesProgram::ArchiveHelper::DataMap data;
    if (!KesProgram::ArchiveHelper::unpackStreamToData(stream, data, KesProgram::ArchiveHelper::PREFIX))
        return false;
    const auto found = data.find("time");
    if (found == data.end())
        return false;
    std::ostringstream text;
    text << found->second->rdbuf();
    const auto time = Kes::NumberText::read(text.str());
    if (!time && !text.str().empty())
        return false;
    _setTime(time);
    return true;
}
//! [archive]
