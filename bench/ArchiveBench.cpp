// Packs and unpacks archives and does the same with bare libarchive, in turns; prints the ratios of the
// times and the peak memory beside the data. Exit status 1 when a limit is exceeded.

#include "HeapMeter.h"

#include <KesProgram/archive/ArchiveHelper.h>

#include <archive.h>
#include <archive_entry.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace KesProgram;
using Contents = std::map<std::string, std::string>;

constexpr double packTimeLimit = 1.05;
constexpr double unpackTimeLimit = 1.3;
constexpr double packMemoryLimit = 3;
constexpr double unpackMemoryLimit = 2;

struct Case {
    const char* name;
    int repeats; ///< of the number of rounds
    Contents contents;
    bool limitsUnpackTime;
    bool limitsMemory;
};

std::string randomBytes(std::size_t size)
{
    std::mt19937_64 random(1);
    std::string bytes;
    bytes.reserve(size);
    while (bytes.size() < size) {
        const auto word = random();
        bytes.append(reinterpret_cast<const char*>(&word), sizeof(word));
    }
    return bytes;
}

/// Measured values as text, as a test program stores them.
std::string measuredText(std::size_t size)
{
    std::mt19937 random(2);
    std::string text;
    text.reserve(size + 64);
    char line[64];
    for (unsigned i = 0; text.size() < size; ++i) {
        const int length = std::snprintf(line, sizeof(line), "point %u;current %.2f A;time %.4f s\n", i,
                                         1 + static_cast<double>(random() % 2000) / 100,
                                         static_cast<double>(random() % 100000) / 10000);
        text.append(line, static_cast<std::size_t>(length));
    }
    text.resize(size);
    return text;
}

/// 2000 entries of a size from `smallest` up to `smallest + range`.
Contents makeEntries(std::size_t smallest, std::size_t range)
{
    constexpr std::size_t count = 2000;
    Contents contents;
    for (std::size_t i = 0; i < count; ++i)
        contents["point" + std::to_string(i)] = measuredText(smallest + range * i / count);
    return contents;
}

std::vector<Case> makeCases(std::size_t size)
{
    std::vector<Case> cases;
    cases.push_back({"text", 1, {{"results", measuredText(size)}}, true, true});
    cases.push_back({"random", 1, {{"record", randomBytes(size)}}, false, true});
    // An entry costs about 900 bytes for its stream, its place in the map and libarchive's directory: for
    // entries smaller than that, no limit on their sum has a sense.
    cases.push_back({"small entries", 10, makeEntries(1000, 3000), true, true});
    cases.push_back({"tiny entries", 20, makeEntries(200, 400), true, false});
    return cases;
}

void check(bool success)
{
    if (!success) {
        std::fputs("an archive operation failed\n", stderr);
        std::exit(2);
    }
}

std::string packRaw(const Contents& contents)
{
    std::string zip;
    auto* writer = archive_write_new();
    archive_write_set_format_zip(writer);
    archive_write_zip_set_compression_deflate(writer);
    check(archive_write_open(
              writer, &zip, nullptr,
              [](archive*, void* out, const void* bytes, std::size_t count) {
                  static_cast<std::string*>(out)->append(static_cast<const char*>(bytes), count);
                  return static_cast<la_ssize_t>(count);
              },
              nullptr) == ARCHIVE_OK);
    for (const auto& [name, content] : contents) {
        auto* entry = archive_entry_new();
        archive_entry_set_pathname(entry, name.c_str());
        archive_entry_set_filetype(entry, AE_IFREG);
        archive_entry_set_perm(entry, 0644);
        check(archive_write_header(writer, entry) == ARCHIVE_OK);
        check(archive_write_data(writer, content.data(), content.size()) ==
              static_cast<la_ssize_t>(content.size()));
        archive_entry_free(entry);
    }
    check(archive_write_close(writer) == ARCHIVE_OK);
    archive_write_free(writer);
    return zip;
}

/// Reads all entries to their end and keeps nothing.
std::size_t unpackRaw(const std::string& zip)
{
    auto* reader = archive_read_new();
    archive_read_support_filter_all(reader);
    archive_read_support_format_all(reader);
    check(archive_read_open_memory(reader, zip.data(), zip.size()) == ARCHIVE_OK);
    std::size_t total = 0;
    for (archive_entry* entry = nullptr; archive_read_next_header(reader, &entry) == ARCHIVE_OK;) {
        static char block[65536];
        for (la_ssize_t count; (count = archive_read_data(reader, block, sizeof(block))) > 0;)
            total += static_cast<std::size_t>(count);
    }
    archive_read_free(reader);
    return total;
}

ArchiveHelper::DataMap toStreams(const Contents& contents)
{
    ArchiveHelper::DataMap data;
    for (const auto& [name, content] : contents)
        data[name] = std::make_unique<std::istringstream>(content);
    return data;
}

/// Processor time: both sides keep to one thread, and other work on the machine must not decide.
double seconds(const std::function<void()>& work)
{
    const auto start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// The shortest time of each, run in turns, and their ratio.
struct Times {
    double raw = 1e9;
    double own = 1e9;
    double ratio() const { return own / raw; }

    void take(const std::function<void()>& rawWork, const std::function<void()>& ownWork)
    {
        raw = std::min(raw, seconds(rawWork));
        own = std::min(own, seconds(ownWork));
    }
};

double peakMemory(const std::function<void()>& work)
{
    HeapMeter::resetPeak();
    const auto before = HeapMeter::getUsed();
    work();
    return static_cast<double>(HeapMeter::getPeak() - before);
}

bool report(const char* subject, const char* what, double ratio, double limit)
{
    const bool kept = limit <= 0 || ratio <= limit;
    std::printf("%-14s %-28s %6.3f", subject, what, ratio);
    if (limit > 0)
        std::printf("  limit %.2f  %s", limit, kept ? "kept" : "EXCEEDED");
    std::puts("");
    return kept;
}

/// More than programs use, so that one measurement takes a while.
constexpr ArchiveHelper::ContentLimits limits{std::uint64_t{1} << 30, std::uint64_t{1} << 30};

bool measure(const Case& subject, int rounds)
{
    std::string zip = packRaw(subject.contents);
    std::string archive;
    Times pack, unpack;
    for (int i = 0; i < rounds * subject.repeats; ++i) {
        auto data = toStreams(subject.contents);
        pack.take([&] { packRaw(subject.contents); },
                  [&] {
                      std::ostringstream out;
                      check(ArchiveHelper::packDataToStream(out, data, ArchiveHelper::PREFIX, limits));
                      archive = std::move(out).str();
                  });
        std::istringstream in(archive);
        unpack.take([&] { check(unpackRaw(zip) > 0); },
                    [&] {
                        ArchiveHelper::DataMap result;
                        check(ArchiveHelper::unpackStreamToData(in, result, ArchiveHelper::PREFIX, limits));
                    });
    }

    auto data = toStreams(subject.contents);
    const double packPeak = peakMemory([&] {
        std::ostringstream out;
        check(ArchiveHelper::packDataToStream(out, data, ArchiveHelper::PREFIX, limits));
    });
    data.clear();
    std::istringstream in(archive);
    double unpacked = 0;
    for (const auto& [name, content] : subject.contents)
        unpacked += static_cast<double>(content.size());
    const double unpackPeak = peakMemory([&] {
        ArchiveHelper::DataMap result;
        check(ArchiveHelper::unpackStreamToData(in, result, ArchiveHelper::PREFIX, limits));
    });

    std::printf("%-14s %.1f MiB -> %.1f MiB; pack %.3f s, raw %.3f s; unpack %.3f s, raw %.3f s\n",
                subject.name, unpacked / (1 << 20), static_cast<double>(archive.size()) / (1 << 20), pack.own,
                pack.raw, unpack.own, unpack.raw);
    const auto size = static_cast<double>(archive.size());
    bool kept = report(subject.name, "pack time / raw", pack.ratio(), packTimeLimit);
    kept &= report(subject.name, "unpack time / raw", unpack.ratio(),
                   subject.limitsUnpackTime ? unpackTimeLimit : 0);
    kept &= report(subject.name, "pack peak / archive", packPeak / size,
                   subject.limitsMemory ? packMemoryLimit : 0);
    kept &= report(subject.name, "unpack peak / output", unpackPeak / unpacked,
                   subject.limitsMemory ? unpackMemoryLimit : 0);
    return kept;
}

} // namespace

/// ArchiveBench [MiB [rounds]]
int main(int argc, char** argv)
{
    HeapMeter::fixAllocator();
    const auto size = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 64;
    const int rounds = argc > 2 ? std::atoi(argv[2]) : 3;
    bool kept = true;
    for (const auto& subject : makeCases(std::max(size, 1ul) << 20))
        kept &= measure(subject, std::max(rounds, 1));
    return kept ? 0 : 1;
}
