#pragma once

#include <algorithm>
#include <cstddef>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace KesTest {

/// What happened, in order, on any thread.
class Record {
public:
    void write(const std::string& entry)
    {
        std::lock_guard lock(_mutex);
        _entries.push_back(entry);
    }
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
