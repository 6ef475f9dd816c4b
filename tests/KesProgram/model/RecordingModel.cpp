#include "RecordingModel.h"

#include <chrono>

namespace KesTest {

void Door::open()
{
    std::lock_guard lock(_mutex);
    _open = true;
    _condition.notify_all();
}

void Door::close()
{
    std::lock_guard lock(_mutex);
    _open = false;
}

void Door::waitUntilOpenOr(const std::function<bool()>& predicate)
{
    std::unique_lock lock(_mutex);
    while (!_open && !predicate())
        _condition.wait_for(lock, std::chrono::milliseconds(2));
}

RecordingModel::RecordingModel()
{
    signalHardwareChanged.connect([this] { write("hardwareChanged"); });
    signalCanStartChanged.connect([this] { write("canStart"); });
    signalCanStopChanged.connect([this] { write("canStop"); });
    signalRunningChanged.connect([this] { write("running"); });
    signalFinished.connect([this](bool started) { write(started ? "finished(true)" : "finished(false)"); });
    signalMessage.connect([this](const std::string& text) { write("message: " + text); });
    signalStateChanged.connect([this] { write("state"); });
    signalClosing.connect([this] { write("closing"); });
    signalClosed.connect([this] { write("closed"); });
}

RecordingModel::~RecordingModel()
{
    prepareDoor.open();
    bodyDoor.open();
}

bool RecordingModel::_onPrepareStart()
{
    write("onPrepareStart");
    return prepareStartAnswer;
}

bool RecordingModel::_onPrepareHardware()
{
    write("onPrepareHardware");
    prepareDoor.waitUntilOpenOr([] { return false; });
    return prepareHardware ? prepareHardware() : true;
}

void RecordingModel::_onStart()
{
    write("onStart");
    _setState("busy");
    if (body) {
        body(*this);
        return;
    }
    bodyDoor.waitUntilOpenOr([] { return false; });
    _finish();
}

void RecordingModel::_onStop()
{
    write("onStop");
}

void RecordingModel::_onFinishHardware()
{
    write("onFinishHardware");
    ProgramModel::_onFinishHardware();
}

void RecordingModel::_onFinished()
{
    write("onFinished");
}

void RecordingModel::_onClosing()
{
    write("onClosing");
}

} // namespace KesTest
