#include <KesProgram/archive/detail/DeferredPacking.h>

#include <KesCommon/FileStream.h>
#include <KesProgram/archive/ContentBudget.h>
#include <KesProgram/archive/detail/ZipWriter.h>

#include <utility>

namespace KesProgram {

namespace {

thread_local DeferredPacking* active = nullptr;

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
        auto content = Kes::readAtMost(*stream, budget.getLeft());
        if (!content || !budget.take(content->size()))
            return false;
        _entries[name] = std::move(*content);
    }
    return !data.empty() && out.write(mark.data(), static_cast<std::streamsize>(mark.size()));
}

} // namespace KesProgram
