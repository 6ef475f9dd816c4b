// The circumstances of a test (info.xml), in an archive whose other entries are good: reading and repairing
// end in a result, and an archive that was read gives bytes that read back as the same.

#include "Require.h"

#include <KesProgram/archive/ArchiveHelper.h>
#include <KesTreeRelay/RelayNodes.h>
#include <Overcurrent/data/OvercurrentArchive.h>

#include <cstdint>
#include <iterator>
#include <map>
#include <sstream>
#include <string>

namespace {

namespace ArchiveHelper = KesProgram::ArchiveHelper;
using Overcurrent::OvercurrentArchive;
using Entries = std::map<std::string, std::string>;

std::string textOf(std::istream& stream)
{
    return {std::istreambuf_iterator<char>(stream), {}};
}

Overcurrent::TestResults makeResults()
{
    Overcurrent::TestResults results;
    results.plan.multiples = {2, 5};
    results.points = {{2, Overcurrent::MeasureState::Measured, std::chrono::seconds(10)},
                      {5, Overcurrent::MeasureState::NoOperation, {}}};
    results.pickUp = Overcurrent::RampResult{Overcurrent::MeasureState::Measured, 1.01, 1.0};
    results.dropOff = Overcurrent::RampResult{Overcurrent::MeasureState::ContactEarly};
    results.end = Overcurrent::RunEnd::Complete;
    results.device = "KESTO-3 No. 00001";
    results.startedAt = "2024-03-01 14:05:09";
    return results;
}

Entries makeGoodEntries()
{
    OvercurrentArchive archive;
    archive.settings = KesTree::RelayNodes::overcurrentStage()->serialize();
    archive.results = makeResults();
    archive.plan = archive.results->plan;
    ArchiveHelper::DataMap data;
    require(ArchiveHelper::unpackStreamToData(*archive.pack(), data, ArchiveHelper::PREFIX),
            "the good archive is one");
    Entries entries;
    for (const auto& [name, stream] : data)
        entries[name] = textOf(*stream);
    return entries;
}

std::string pack(const Entries& entries)
{
    ArchiveHelper::DataMap data;
    for (const auto& [name, text] : entries)
        data[name] = std::make_unique<std::stringstream>(text);
    std::ostringstream out;
    require(ArchiveHelper::packDataToStream(out, data, ArchiveHelper::PREFIX), "the entries can be packed");
    return out.str();
}

void checkWrittenAgain(const OvercurrentArchive& archive)
{
    const std::string bytes = textOf(*archive.pack());
    std::istringstream stream(bytes);
    const auto again = OvercurrentArchive::read(stream);
    require(again.has_value(), "what was read can be written and read once more");
    require(textOf(*again->pack()) == bytes, "writing is stable");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static Entries entries = makeGoodEntries();
    entries.at("info.xml").assign(reinterpret_cast<const char*>(bytes), size);
    const std::string packed = pack(entries);

    std::istringstream stream(packed);
    if (const auto archive = OvercurrentArchive::read(stream))
        checkWrittenAgain(*archive);
    std::istringstream damaged(packed);
    if (const auto archive = OvercurrentArchive::repair(damaged))
        checkWrittenAgain(*archive);
    return 0;
}
