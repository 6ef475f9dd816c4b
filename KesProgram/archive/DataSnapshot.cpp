#include <KesProgram/archive/DataSnapshot.h>

#include <KesProgram/archive/detail/DeferredPacking.h>

#include <iterator>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace KesProgram {

namespace {

std::optional<std::string> readAll(const DataSnapshot::Provider& provider)
{
    const auto stream = provider();
    if (!stream)
        return std::nullopt;
    // Only the bytes count, here as in saving: what is left of the stream's state does not.
    stream->clear();
    std::ostringstream bytes;
    if (stream->peek() != std::istream::traits_type::eof())
        bytes << stream->rdbuf();
    return std::move(bytes).str();
}

} // namespace

DataSnapshot::DataSnapshot() = default;

DataSnapshot::DataSnapshot(Data data) : _data(std::make_shared<const Data>(std::move(data))) {}

DataSnapshot DataSnapshot::take(const Provider& provider)
{
    {
        DeferredPacking deferred;
        std::optional<std::string> bytes;
        try {
            bytes = readAll(provider);
        } catch (...) {
            // It may have looked at the archive, and found none.
            if (deferred.getCount() == 0)
                throw;
        }
        if (!bytes && deferred.getCount() == 0)
            return {};
        if (deferred.getCount() == 1 && bytes == DeferredPacking::mark)
            return DataSnapshot({{},
                                 std::move(deferred.getHeader()),
                                 std::move(deferred.getEntries()),
                                 deferred.getLimits()});
        if (deferred.getCount() == 0)
            return DataSnapshot({std::move(*bytes), {}, {}, {}});
    }
    // It does more with the archive than hand it over: it gets the real one.
    auto bytes = readAll(provider);
    return bytes ? DataSnapshot({std::move(*bytes), {}, {}, {}}) : DataSnapshot();
}

bool DataSnapshot::operator==(const DataSnapshot& other) const
{
    return _data == other._data || (_data && other._data && *_data == *other._data);
}

std::string DataSnapshot::pack() const
{
    if (!_data || _data->entries.empty())
        return _data ? _data->bytes : std::string();
    ArchiveHelper::DataMap data;
    for (const auto& [name, content] : _data->entries)
        data[name] = std::make_unique<std::istringstream>(content);
    std::ostringstream out;
    // The program has been informed that its data can be packed.
    if (!ArchiveHelper::packDataToStream(out, data, _data->header, _data->limits))
        throw std::runtime_error("the archive cannot be packed");
    return std::move(out).str();
}

} // namespace KesProgram
