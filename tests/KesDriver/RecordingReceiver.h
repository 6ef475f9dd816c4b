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

/// Writes down what a link reports, one line each: "step 0 0", "input 1 closed 120 in 0", "finished complete
/// 500", "fault IAl", "lost". Times are counted from the latest step 0. "in" tells the step of an input.
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
            line = std::visit([this](const auto& event) { return _describe(event); }, report);
            _lines.push_back(line);
            _lastConnection = connection;
            _added.notify_all();
        }
        if (_onLine)
            _onLine(line);
    }

    std::vector<std::string> getLines() const
    {
        std::lock_guard lock(_mutex);
        return _lines;
    }
    /// The device time of the latest step 0.
    KesDriver::DeviceTime getStart() const
    {
        std::lock_guard lock(_mutex);
        return _start;
    }
    KesDriver::ConnectionNumber getLastConnection() const
    {
        std::lock_guard lock(_mutex);
        return _lastConnection;
    }
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
    std::string _since(KesDriver::DeviceTime time) const { return std::to_string((time - _start).count()); }

    std::string _describe(const KesDriver::InputEvent& event)
    {
        return "input " + std::to_string(event.input) + (event.isClosed ? " closed " : " open ") +
               _since(event.time) + (event.step ? " in " + std::to_string(*event.step) : "");
    }
    std::string _describe(const KesDriver::StepEvent& event)
    {
        if (event.step == 0)
            _start = event.time;
        return "step " + std::to_string(event.step) + ' ' + _since(event.time);
    }
    std::string _describe(const KesDriver::SequenceEvent& event)
    {
        return std::string("finished ") + (event.isComplete ? "complete " : "incomplete ") +
               _since(event.time);
    }
    std::string _describe(const KesDriver::KesAvary& avary)
    {
        std::string line = "fault";
        for (const auto& channel : avary.channels)
            line += ' ' + channel.name + (channel.isDisconnected ? "d" : "") +
                    (channel.isOverheat ? "h" : "") + (channel.isOverload ? "l" : "");
        return line + (avary.isQuickShutdown ? " button" : "");
    }
    std::string _describe(const KesDriver::ConnectionLost&) { return "lost"; }

    mutable std::mutex _mutex;
    mutable std::condition_variable _added;
    std::shared_mutex _acting;
    LineAction _onLine;
    std::vector<std::string> _lines;
    KesDriver::DeviceTime _start{0};
    KesDriver::ConnectionNumber _lastConnection = 0;
};

} // namespace KesTest
