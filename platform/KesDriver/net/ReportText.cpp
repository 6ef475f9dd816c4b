// What a device says about itself, and its events, as text.

#include <KesCommon/NumberText.h>
#include <KesCommon/StringHelper.h>
#include <KesDriver/net/FieldText.h>
#include <KesDriver/net/ValueText.h>

#include <limits>
#include <tuple>
#include <utility>
#include <vector>

namespace KesDriver::ValueText {

namespace {

using Fields = std::span<const std::string_view>;
using Content = std::optional<EventRecord::Content>;

constexpr std::size_t mostChannels = 256;
constexpr const char* stages[] = {"IDLE", "ARM", "RUN"};
constexpr const char* maker = "KES";
constexpr std::string_view product = "KESTO";

const char* flag(bool value)
{
    return value ? "1" : "0";
}

template <typename Number>
std::optional<Number> readUnsigned(std::string_view field)
{
    const auto value = FieldText::readCount(field, std::numeric_limits<Number>::max());
    return value ? std::optional(static_cast<Number>(*value)) : std::nullopt;
}

std::string writeContent(const InputEvent& event)
{
    auto text = "INP," + std::to_string(event.input) + ',' + flag(event.isClosed);
    return event.step ? text + ',' + std::to_string(*event.step) : text;
}

std::string writeContent(const StepEvent& event)
{
    return "STEP," + std::to_string(event.step);
}

std::string writeContent(const SequenceEvent& event)
{
    return std::string("SEQ,") + flag(event.isComplete);
}

std::string writeContent(const KesAvary& avary)
{
    return "FAULT," + writeFaults(avary);
}

std::string writeContent(const ReleaseRecord& record)
{
    return "RELEASE," + FieldText::quote(record.reason);
}

Content readInput(Fields fields, DeviceTime time)
{
    if (fields.size() != 2 && fields.size() != 3)
        return std::nullopt;
    const auto input = readUnsigned<unsigned>(fields[0]);
    const auto isClosed = FieldText::readFlag(fields[1]);
    InputEvent event{input.value_or(0), isClosed.value_or(false), time};
    if (fields.size() == 3)
        event.step = readUnsigned<std::size_t>(fields[2]);
    if (!input || !isClosed || (fields.size() == 3 && !event.step))
        return std::nullopt;
    return event;
}

Content readStepEvent(Fields fields, DeviceTime time)
{
    const auto step = fields.size() == 1 ? readUnsigned<std::size_t>(fields[0]) : std::nullopt;
    return step ? Content(StepEvent{*step, time}) : std::nullopt;
}

Content readSequenceEnd(Fields fields, DeviceTime time)
{
    const auto isComplete = fields.size() == 1 ? FieldText::readFlag(fields[0]) : std::nullopt;
    return isComplete ? Content(SequenceEvent{*isComplete, time}) : std::nullopt;
}

Content readRelease(Fields fields)
{
    auto reason = fields.size() == 1 ? FieldText::unquote(fields[0]) : std::nullopt;
    return reason ? Content(ReleaseRecord{*std::move(reason)}) : std::nullopt;
}

/// Such as "IA:100". A name may hold any character.
std::optional<KesAvaryChannel> readChannel(std::string_view field)
{
    constexpr std::size_t flags = 3;
    const auto text = FieldText::unquote(field);
    if (!text || text->size() <= flags || (*text)[text->size() - flags - 1] != ':')
        return std::nullopt;
    const auto marks = std::string_view(*text).substr(text->size() - flags);
    if (marks.find_first_not_of("01") != std::string_view::npos)
        return std::nullopt;
    return KesAvaryChannel{text->substr(0, text->size() - flags - 1), marks[2] == '1', marks[1] == '1',
                           marks[0] == '1'};
}

std::optional<KesAvary> readFaults(Fields fields)
{
    const auto isQuickShutdown = fields.empty() ? std::nullopt : FieldText::readFlag(fields[0]);
    if (!isQuickShutdown)
        return std::nullopt;
    KesAvary avary;
    avary.isQuickShutdown = *isQuickShutdown;
    for (const auto field : fields.subspan(1)) {
        auto channel = readChannel(field);
        if (!channel)
            return std::nullopt;
        avary.channels.push_back(*std::move(channel));
    }
    return avary;
}

Content readContent(std::string_view kind, Fields fields, DeviceTime time)
{
    if (kind == "INP")
        return readInput(fields, time);
    if (kind == "STEP")
        return readStepEvent(fields, time);
    if (kind == "SEQ")
        return readSequenceEnd(fields, time);
    if (kind == "RELEASE")
        return readRelease(fields);
    auto avary = kind == "FAULT" ? readFaults(fields) : std::nullopt;
    return avary ? Content(*std::move(avary)) : std::nullopt;
}

std::optional<std::uint16_t> readType(std::string_view text)
{
    if (text == product)
        return std::uint16_t(0);
    if (text.size() <= product.size() + 1 || !text.starts_with(product) || text[product.size()] != '-')
        return std::nullopt;
    return readUnsigned<std::uint16_t>(text.substr(product.size() + 1));
}

} // namespace

bool DeviceStatus::operator==(const DeviceStatus& other) const
{
    const auto tie = [](const DeviceStatus& status) {
        return std::tie(status.state.isReady, status.state.isAuxDCEnabled, status.state.auxDCVolts,
                        status.state.error, status.isWorking, status.stage);
    };
    return tie(*this) == tie(other);
}

std::string write(const DeviceStatus& status)
{
    const auto& state = status.state;
    return std::string(flag(state.isReady)) + ',' + flag(state.isAuxDCEnabled) + ',' +
           Kes::NumberText::write(state.auxDCVolts) + ',' + flag(status.isWorking) + ',' +
           stages[static_cast<std::size_t>(status.stage)];
}

std::optional<DeviceStatus> readStatus(std::string_view text)
{
    constexpr std::size_t count = 5;
    const auto fields = FieldText::split(text, ',', count);
    if (!fields || fields->size() != count)
        return std::nullopt;
    const auto isReady = FieldText::readFlag((*fields)[0]);
    const auto isAuxDCEnabled = FieldText::readFlag((*fields)[1]);
    const auto volts = FieldText::readNumber((*fields)[2]);
    const auto isWorking = FieldText::readFlag((*fields)[3]);
    std::size_t stage = 0;
    while (stage < std::size(stages) && (*fields)[4] != stages[stage])
        ++stage;
    if (!isReady || !isAuxDCEnabled || !volts || !isWorking || stage == std::size(stages))
        return std::nullopt;
    return DeviceStatus{{*isReady, *isAuxDCEnabled, *volts, {}}, *isWorking, static_cast<Stage>(stage)};
}

std::string write(const EventRecord& record)
{
    return std::to_string(record.number) + ',' + std::to_string(record.time.count()) + ',' +
           std::visit([](const auto& content) { return writeContent(content); }, record.content);
}

std::optional<EventRecord> readEvent(std::string_view text)
{
    constexpr std::size_t headFields = 3;
    const auto fields = FieldText::split(text, ',', headFields + 1 + mostChannels);
    if (!fields || fields->size() < headFields)
        return std::nullopt;
    const auto number = readUnsigned<std::uint64_t>((*fields)[0]);
    const auto time = readMicroseconds((*fields)[1], true);
    if (!number || *number == 0 || !time)
        return std::nullopt;
    auto content = readContent((*fields)[2], Fields(*fields).subspan(headFields), DeviceTime(*time));
    if (!content)
        return std::nullopt;
    return EventRecord{*number, DeviceTime(*time), *std::move(content)};
}

std::string writeFaults(const KesAvary& avary)
{
    std::string text = flag(avary.isQuickShutdown);
    for (const auto& channel : avary.channels)
        text += ',' + FieldText::quote(channel.name + ':' + flag(channel.isOverload) +
                                       flag(channel.isOverheat) + flag(channel.isDisconnected));
    return text;
}

std::optional<KesAvary> readFaults(std::string_view text)
{
    const auto fields = FieldText::split(text, ',', mostChannels + 1);
    return fields ? readFaults(Fields(*fields)) : std::nullopt;
}

std::string writeIdentity(const KestoIdentity& identity)
{
    const auto type = identity.identifer.getType();
    const auto name = type == 0 ? std::string(product) : std::string(product) + '-' + std::to_string(type);
    auto firmware = identity.firmwareVersion;
    std::erase_if(firmware, [](char c) {
        return static_cast<unsigned char>(c) <= 0x20U || c == '\x7F' || c == ',' || c == ';' || c == '"' ||
               c == '\'';
    });
    return Kes::StringHelper::format("%s,%s,%05u,%s", maker, name, identity.identifer.getSerialNumber(),
                                     firmware);
}

std::optional<KestoIdentity> readIdentity(std::string_view text)
{
    constexpr std::size_t count = 4;
    const auto fields = FieldText::split(text, ',', count);
    if (!fields || fields->size() != count || fields->front() != maker)
        return std::nullopt;
    const auto type = readType((*fields)[1]);
    const auto serialNumber = readUnsigned<std::uint32_t>((*fields)[2]);
    if (!type || !serialNumber)
        return std::nullopt;
    return KestoIdentity{KestoIdentifer(*type, *serialNumber), std::string((*fields)[3]), {}};
}

} // namespace KesDriver::ValueText
