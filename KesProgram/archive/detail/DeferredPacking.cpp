#include <KesProgram/archive/detail/DeferredPacking.h>

#include <KesProgram/archive/ContentBudget.h>
#include <KesProgram/archive/detail/ZipWriter.h>

#include <sstream>
#include <utility>

namespace KesProgram {

namespace {

thread_local DeferredPacking* active = nullptr;

std::string rest(std::istream& stream)
{
    std::ostringstream bytes;
    if (stream.peek() != std::istream::traits_type::eof())
        bytes << stream.rdbuf();
    return std::move(bytes).str();
}

} // namespace

DeferredPacking::DeferredPacking()
{
    active = this;
}

DeferredPacking::~DeferredPacking()
{
    active = nullptr;
}

DeferredPacking* DeferredPacking::getActive()
{
    return active;
}

bool DeferredPacking::take(std::ostream& out, ArchiveHelper::DataMap& data, const std::string& header,
                           const ArchiveHelper::ContentLimits& limits)
{
    ++_count;
    _header = header;
    _limits = limits;
    _entries.clear();
    ContentBudget budget(limits);
    for (const auto& [name, stream] : data) {
        if (!stream || !ZipWriter::canStore(name) || !budget.takeEntry(name))
            return false;
        const auto& content = _entries[name] = rest(*stream);
        if (!budget.take(content.size()))
            return false;
    }
    return !data.empty() && out.write(mark.data(), static_cast<std::streamsize>(mark.size()));
}

} // namespace KesProgram
