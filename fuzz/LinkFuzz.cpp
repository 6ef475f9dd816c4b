// What a device on the network sends to a link: lines, answers, events and their values.

#include "Require.h"

#include <KesDriver/net/FieldText.h>
#include <KesDriver/net/LineBuffer.h>
#include <KesDriver/net/ValueText.h>
#include <KesDriver/net/detail/Answer.h>
#include <KesDriver/net/detail/EventOrder.h>

#include <algorithm>
#include <utility>

using namespace KesDriver;

namespace {

constexpr std::size_t longestLine = 4096;

struct Lines {
    std::vector<std::string> texts;
    bool isBroken = false;
};

/// As it comes in packets of this size.
Lines split(std::string_view bytes, std::size_t packet)
{
    LineBuffer buffer(longestLine);
    Lines lines;
    std::string line;
    for (std::size_t begin = 0; begin < bytes.size(); begin += packet) {
        buffer.append(bytes.substr(begin, packet));
        while (buffer.take(line))
            lines.texts.push_back(line);
    }
    lines.isBroken = buffer.isBroken();
    return lines;
}

class Events {
public:
    void hear(const std::string& line)
    {
        if (line.starts_with('!'))
            _check(_order.take(std::string_view(line).substr(1)));
        else if (_isAsked) {
            _isAsked = false;
            const auto answer = readAnswer(line, 1, 1);
            if (answer && answer->code == 0)
                _check(_order.fill(answer->fields.front()));
        }
        if (_order.hasGap()) {
            const auto gap = _order.takeGap();
            require(gap.from == _next && gap.count > 0, "a gap begins behind what has come");
            _isAsked = true;
        }
    }

private:
    void _check(const std::vector<EventOrder::Record>& due)
    {
        for (const auto& record : due) {
            require(record.number == _next++, "events come without a gap");
            require(record.time >= _time, "events come in order");
            _time = record.time;
        }
    }

    EventOrder _order;
    std::uint64_t _next = 1;
    DeviceTime _time{0};
    bool _isAsked = false;
};

template <typename Read, typename Write>
void readTwice(const std::string& text, Read read, Write write)
{
    if (const auto value = read(text))
        require(read(write(*value)) == value, "a value has one meaning");
}

void checkValues(const std::string& text)
{
    const auto write = [](const auto& value) { return ValueText::write(value); };
    readTwice(text, ValueText::readOutputs, write);
    readTwice(text, ValueText::readRamp, write);
    readTwice(text, ValueText::readEnd, write);
    readTwice(text, ValueText::readLimits, write);
    readTwice(text, ValueText::readStatus, write);
    readTwice(text, ValueText::readEvent, write);
    readTwice(text, ValueText::readFaults, ValueText::writeFaults);
    if (const auto quoted = FieldText::unquote(text))
        require(FieldText::unquote(FieldText::quote(*quoted)).has_value(), "a quoted text is one");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(bytes), size);
    const auto lines = split(text, std::max<std::size_t>(size, 1));
    const auto pieces = split(text, 7);
    require(lines.texts == pieces.texts, "packets mean nothing");
    // What is too long without an end is noticed when it has come.
    require(!lines.isBroken || pieces.isBroken, "packets hide nothing");
    Events events;
    for (const auto& line : lines.texts) {
        require(line.size() <= longestLine, "lines are bounded");
        events.hear(line);
        for (std::size_t queries = 0; queries < 4; ++queries)
            if (const auto answer = readAnswer(line, 1, queries))
                require(answer->fields.size() == (answer->code == 0 ? queries : 0), "nothing is missing");
        checkValues(line);
    }
    (void)ValueText::readSequence(text, 100);
    return 0;
}
