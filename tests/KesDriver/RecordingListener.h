#pragma once

#include "support/Message.h"

#include <KesDriver/IKestoLink.h>

#include <gmock/gmock.h>

#include <condition_variable>
#include <mutex>

namespace KesTest {

/// Writes down what a link reports, one line each: "input 1 closed 120", "step 0 0", "finished complete 500",
/// "fault IA", "lost". Times are counted from the latest step 0.
class RecordingListener : public KesDriver::IKestoLinkListener {
public:
    /// Runs after the line is written, on the device's thread, with no lock held.
    std::function<void(const std::string&)> onLine;

    void onInput(const KesDriver::InputEvent& event) override
    {
        _add("input " + std::to_string(event.input) + (event.isClosed ? " closed " : " open ") +
             _since(event.time));
    }
    void onStep(const KesDriver::StepEvent& event) override
    {
        if (event.step == 0)
            _start = event.time;
        _add("step " + std::to_string(event.step) + ' ' + _since(event.time));
    }
    void onSequenceFinished(const KesDriver::SequenceEvent& event) override
    {
        _add(std::string("finished ") + (event.isComplete ? "complete " : "incomplete ") +
             _since(event.time));
    }
    void onAvary(const KesDriver::KesAvary& avary) override
    {
        std::string line = "fault";
        for (const auto& channel : avary.channels)
            line += ' ' + channel.name + (channel.isDisconnected ? "d" : "") +
                    (channel.isOverheat ? "h" : "") + (channel.isOverload ? "l" : "");
        _add(line + (avary.isQuickShutdown ? " button" : ""));
    }
    void onConnectionLost() override { _add("lost"); }

    std::vector<std::string> getLines() const
    {
        std::lock_guard lock(_mutex);
        return _lines;
    }
    void clear()
    {
        std::lock_guard lock(_mutex);
        _lines.clear();
    }
    /// Waits for as many lines that begin so; false after ten seconds.
    bool waitFor(const std::string& beginning, std::size_t count = 1) const
    {
        std::unique_lock lock(_mutex);
        return _added.wait_for(lock, std::chrono::seconds(10), [&] {
            std::size_t found = 0;
            for (const auto& line : _lines)
                found += line.starts_with(beginning) ? 1 : 0;
            return found >= count;
        });
    }

private:
    std::string _since(KesDriver::DeviceTime time) const { return std::to_string((time - _start).count()); }
    void _add(const std::string& line)
    {
        {
            std::lock_guard lock(_mutex);
            _lines.push_back(line);
            _added.notify_all();
        }
        if (onLine)
            onLine(line);
    }

    mutable std::mutex _mutex;
    mutable std::condition_variable _added;
    std::vector<std::string> _lines;
    KesDriver::DeviceTime _start{0};
};

} // namespace KesTest
