#pragma once

#include "support/Message.h"

#include <KesDriver/IKestoLink.h>

#include <gmock/gmock.h>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <vector>

namespace KesTest {

/// A report on one line: "step 0 0", "input 1 closed 120 in 0", "finished complete 500", "fault IAl", "lost".
/// Times are counted from a start; "in" tells the step of an input; a fault has the number of its device, if
/// that is known.
inline std::string describe(const KesDriver::Report& report, KesDriver::DeviceTime start)
{
    using std::to_string;
    const auto since = [=](const auto& event) { return to_string((event.time - start).count()); };
    if (const auto* input = std::get_if<KesDriver::InputEvent>(&report))
        return "input " + to_string(input->input) + (input->isClosed ? " closed " : " open ") +
               since(*input) + (input->step ? " in " + to_string(*input->step) : "");
    if (const auto* step = std::get_if<KesDriver::StepEvent>(&report))
        return "step " + to_string(step->step) + ' ' + since(*step);
    if (const auto* end = std::get_if<KesDriver::SequenceEvent>(&report))
        return (end->isComplete ? "finished complete " : "finished incomplete ") + since(*end);
    const auto* avary = std::get_if<KesDriver::KesAvary>(&report);
    if (!avary)
        return "lost";
    std::string line = avary->serialNumber ? "fault " + to_string(avary->serialNumber) : "fault";
    for (const auto& channel : avary->channels)
        if (channel.isDisconnected || channel.isOverheat || channel.isOverload)
            line += ' ' + channel.name + (channel.isDisconnected ? "d" : "") +
                    (channel.isOverheat ? "h" : "") + (channel.isOverload ? "l" : "");
    return line + (avary->isQuickShutdown ? " button" : "");
}

/// Writes down what a link reports, with times counted from the latest step 0.
class RecordingReceiver : public KesDriver::IReportReceiver {
public:
    using LineAction = std::function<void(const std::string&)>;
    /// Runs after each line is written, on the device's thread. Waits until the action that was there before
    /// has ended, so that it may use what its test has on the stack.
    void onLine(LineAction action)
    {
        std::lock_guard lock(_acting);
        _onLine.swap(action);
    }

    void receive(KesDriver::ConnectionNumber connection, const KesDriver::Report& report) override
    {
        std::shared_lock acting(_acting);
        std::string line;
        {
            std::lock_guard lock(_mutex);
            if (const auto* step = std::get_if<KesDriver::StepEvent>(&report); step && step->step == 0)
                _start = step->time;
            line = describe(report, _start);
            _lines.push_back(line);
            _lastConnection = connection;
            _added.notify_all();
        }
        if (_onLine)
            _onLine(line);
    }

    std::vector<std::string> getLines() const { return _get(_lines); }
    /// The device time of the latest step 0.
    KesDriver::DeviceTime getStart() const { return _get(_start); }
    KesDriver::ConnectionNumber getLastConnection() const { return _get(_lastConnection); }
    void clear()
    {
        std::lock_guard lock(_mutex);
        _lines.clear();
    }
    /// Waits for as many lines that begin so; false after a minute.
    bool waitFor(const std::string& beginning, std::size_t count = 1) const
    {
        std::unique_lock lock(_mutex);
        return _added.wait_for(lock, std::chrono::minutes(1), [&] {
            std::size_t found = 0;
            for (const auto& line : _lines)
                found += line.starts_with(beginning) ? 1 : 0;
            return found >= count;
        });
    }

private:
    template <typename Field>
    Field _get(const Field& field) const
    {
        std::lock_guard lock(_mutex);
        return field;
    }

    mutable std::mutex _mutex;
    mutable std::condition_variable _added;
    std::shared_mutex _acting;
    LineAction _onLine;
    std::vector<std::string> _lines;
    KesDriver::DeviceTime _start{0};
    KesDriver::ConnectionNumber _lastConnection = 0;
};

} // namespace KesTest
