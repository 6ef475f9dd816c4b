#include <KesMeasure/ContactChanges.h>

#include <gmock/gmock.h>

using namespace std::chrono_literals;
using KesMeasure::SequenceRecord;
namespace ContactChanges = KesMeasure::ContactChanges;

namespace {

/// Two steps, from 0 and 100 ms, to 200 ms; input 1 moves at these milliseconds, at first it closes.
SequenceRecord recordOf(const std::vector<int>& milliseconds)
{
    SequenceRecord record;
    record.steps = {0ms, 100ms};
    record.end = KesDriver::SequenceEvent{true, 200ms};
    bool isClosed = false;
    for (const int at : milliseconds) {
        isClosed = !isClosed;
        record.inputs.push_back({1, isClosed, std::chrono::milliseconds(at), at < 100 ? 0u : 1u});
        record.inputs.push_back({2, isClosed, std::chrono::milliseconds(at + 1), at < 100 ? 0u : 1u});
    }
    return record;
}

} // namespace

TEST(ContactChangesTest, AChangeHasTheTimeOfTheFirstMovementThatLedToIt)
{
    const struct {
        const char* what;
        std::vector<int> movements;
        std::vector<int> changes;
    } cases[] = {
        {"no bounce", {110, 150}, {110, 150}},
        {"bounces on closing, and on opening", {110, 112, 115, 150, 154, 158}, {110, 150}},
        {"closes for too short a time", {110, 114, 150}, {150}},
        {"opens for too short a time", {110, 130, 134}, {110}},
        {"closes for just long enough", {110, 115}, {110, 115}},
        {"moves shortly before the end", {197}, {}},
        {"bounces into the next step", {98, 99, 101}, {98}},
        {"never moves", {}, {}},
    };
    for (const auto& test : cases) {
        std::vector<int> found;
        for (const auto& change : ContactChanges::find(recordOf(test.movements), 1, 5ms)) {
            EXPECT_EQ(change.isClosed, found.size() % 2 == 0) << test.what;
            found.push_back(static_cast<int>(change.time / 1ms));
        }
        EXPECT_EQ(found, test.changes) << test.what;
    }
}

TEST(ContactChangesTest, FindsTheFirstOneFromAStepOn)
{
    const auto record = recordOf({50, 80, 120, 160});
    const auto timeOf = [&](bool isClosed, std::size_t fromStep) {
        return ContactChanges::findFirst(record, {2, isClosed}, 5ms, fromStep)->time;
    };
    EXPECT_EQ(timeOf(true, 0), 51ms);
    EXPECT_EQ(timeOf(true, 1), 121ms);
    EXPECT_EQ(timeOf(false, 1), 161ms);
    EXPECT_FALSE(ContactChanges::findFirst(record, {3, true}, 5ms));
}
