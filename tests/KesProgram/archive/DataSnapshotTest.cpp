// That a snapshot is quick, and packs to the bytes that its program would have written.

#include "Archives.h"

#include <KesProgram/archive/DataSnapshot.h>

#include <chrono>
#include <fstream>
#include <random>

namespace {

using namespace KesProgram;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Archives::Contents;

bool pack(std::ostream& out, const Contents& contents, const ArchiveHelper::ContentLimits& limits = {})
{
    auto data = Archives::toStreams(contents);
    return ArchiveHelper::packDataToStream(out, data, "program", limits);
}

/// A program packs with the container functions; the snapshot leaves that to another thread.
TEST(DataSnapshot, OfAMebibyteIsTakenInTwoMilliseconds)
{
    std::mt19937 random(1);
    std::string noise(1 << 20, '\0');
    for (auto& byte : noise)
        byte = static_cast<char>(random());
    const auto provider = [&] {
        auto stream = std::make_unique<std::stringstream>();
        EXPECT_TRUE(pack(*stream, {{"a", noise}, {"empty", ""}}));
        return stream;
    };
    const std::string bytes = provider()->str();
    auto shortest = Clock::duration::max();
    DataSnapshot snapshot;
    for (int i = 0; i < 20; ++i) {
        const auto begin = Clock::now();
        const auto next = DataSnapshot::take(provider);
        EXPECT_TRUE(i == 0 || next == snapshot);
        snapshot = next;
        shortest = std::min(shortest, Clock::now() - begin);
    }
    EXPECT_EQ(snapshot.pack(), bytes);
    const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(shortest).count();
#ifdef NDEBUG
    EXPECT_LT(microseconds, 2000);
#endif
    noise[5] ^= 1;
    EXPECT_FALSE(DataSnapshot::take(provider) == snapshot);
}

TEST(DataSnapshot, OfAProgramThatDoesMoreThanPackingIsExact)
{
    using Stream = std::stringstream;
    const Contents contents = {{"a", "content"}};
    const std::function<void(Stream&)> programs[] = {
        [&](Stream& stream) { stream << "head", pack(stream, contents); },
        [&](Stream& stream) { pack(stream, contents), pack(stream, contents); },
        [&](Stream& stream) {
            ArchiveHelper::DataMap back;
            if (!pack(stream, contents) || !ArchiveHelper::unpackStreamToData(stream, back, "program"))
                throw std::runtime_error("no archive");
            stream.seekg(0);
        },
        [](Stream& stream) { stream << "plain"; },
        [](Stream&) {},
    };
    for (const auto& program : programs) {
        const auto provider = [&] {
            auto stream = std::make_unique<Stream>();
            program(*stream);
            return stream;
        };
        EXPECT_EQ(DataSnapshot::take(provider).pack(), provider()->str());
    }
    EXPECT_TRUE(DataSnapshot::take([] { return nullptr; }).isEmpty());
}

TEST(DataSnapshot, OfAnEndlessStreamEnds)
{
    const auto begin = Clock::now();
    const auto bytes = DataSnapshot::take([] {
                           ArchiveHelper::DataMap data;
                           data["endless"] = std::make_unique<std::ifstream>("/dev/zero");
                           auto stream = std::make_unique<std::stringstream>();
                           EXPECT_FALSE(ArchiveHelper::packDataToStream(*stream, data, "program"));
                           return stream;
                       }).pack();
    EXPECT_EQ(bytes, "");
    EXPECT_LT(Clock::now() - begin, 5s) << "it fills the memory";
}

/// The data of a save must not pass for an archive when there is none.
TEST(DataSnapshot, OfWhatCannotBePackedIsAFailureToItsProgramAsThePackingIs)
{
    ArchiveHelper::ContentLimits limits;
    limits.entry = 100;
    limits.total = 2000;
    const Contents impossible[] = {{{"long", std::string(101, 'x')}},
                                   {{"1", "x"}, {"2", "x"}, {"3", "x"}, {"4", "x"}},
                                   {{"folder/", ""}},
                                   {{std::string(65536, 'n'), ""}},
                                   {}};
    for (const auto& contents : impossible)
        EXPECT_THROW(DataSnapshot::take([&]() -> std::unique_ptr<std::istream> {
                         auto stream = std::make_unique<std::stringstream>();
                         if (!pack(*stream, contents, limits))
                             throw std::runtime_error("too much");
                         return stream;
                     }),
                     std::runtime_error);
}

} // namespace
