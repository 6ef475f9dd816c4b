#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace KesTest {

/// What happened, in order, on any thread.
class Record {
public:
    void write(const std::string& entry)
    {
        {
            std::lock_guard lock(_mutex);
            _entries.push_back(entry);
        }
        failIn(entry);
    }
    /// The hook or listener of this name throws; one that writes an entry has the entry as its name.
    void failIn(const std::string& name)
    {
        if (name != throwing.load())
            return;
        hasThrown = true;
        throw std::runtime_error("thrown by " + name);
    }
    std::atomic<const char*> throwing{""};
    std::atomic<bool> hasThrown{false};
    std::vector<std::string> take()
    {
        std::lock_guard lock(_mutex);
        return std::exchange(_entries, {});
    }
    bool has(const std::string& entry) const { return count(entry) > 0; }
    std::size_t count(const std::string& entry) const
    {
        std::lock_guard lock(_mutex);
        return static_cast<std::size_t>(std::count(_entries.begin(), _entries.end(), entry));
    }

private:
    mutable std::mutex _mutex;
    std::vector<std::string> _entries;
};

} // namespace KesTest
