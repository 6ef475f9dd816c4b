#include <KesDriver/net/ValueText.h>

#include <KesCommon/NumberText.h>
#include <KesCommon/StringHelper.h>
#include <KesDriver/net/FieldText.h>

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <vector>

namespace KesDriver::ValueText {

namespace {

using Fields = std::vector<std::string_view>;

constexpr double microsecondsOfSecond = 1e6;

std::optional<Fields> splitExactly(std::string_view text, std::size_t count)
{
    auto fields = FieldText::split(text, ',', count);
    return fields && fields->size() == count ? fields : std::nullopt;
}

void append(std::string& text, const std::string& field)
{
    if (!text.empty())
        text += ',';
    text += field;
}

void append(std::string& text, double number)
{
    append(text, Kes::NumberText::write(number));
}

template <typename Pairs>
void appendPairs(std::string& text, const Pairs& pairs)
{
    for (const auto& pair : pairs) {
        append(text, pair.magnitude);
        append(text, pair.degrees);
    }
}

/// The values that states and ramps have alike.
template <typename Values>
std::string writeWaves(const Values& values)
{
    std::string text;
    appendPairs(text, values.currents);
    appendPairs(text, values.voltages);
    append(text, values.currentHertz);
    append(text, values.voltageHertz);
    return text;
}

template <typename Values>
Values toWaves(std::span<const double> numbers)
{
    Values values;
    std::size_t next = 0;
    for (auto* group : {&values.currents, &values.voltages})
        for (auto& pair : *group) {
            pair.magnitude = numbers[next++];
            pair.degrees = numbers[next++];
        }
    values.currentHertz = numbers[next++];
    values.voltageHertz = numbers[next];
    return values;
}

bool areFinite(std::span<const double> numbers)
{
    for (const double number : numbers)
        if (!std::isfinite(number))
            return false;
    return true;
}

std::optional<std::vector<double>> readNumbers(std::string_view text, std::size_t count)
{
    const auto fields = splitExactly(text, count);
    if (!fields)
        return std::nullopt;
    std::vector<double> numbers;
    numbers.reserve(count);
    for (const auto field : *fields) {
        const auto number = FieldText::readNumber(field);
        if (!number)
            return std::nullopt;
        numbers.push_back(*number);
    }
    return numbers;
}

void appendCondition(std::string& text, const InputCondition& condition)
{
    append(text, std::to_string(condition.input) + (condition.isClosed ? 'C' : 'O'));
    if (condition.isEdge)
        text += 'E';
}

bool isWord(std::string_view text, std::string_view word)
{
    return text.size() == word.size() && Kes::StringHelper::isInclude(text, word, 0, text.size(), true);
}

/// Takes the part before the first mark off the text; the whole text when there is none.
std::string_view takeUntil(std::string_view& text, char mark)
{
    const auto end = text.find(mark);
    const auto part = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return part;
}

template <typename Value>
bool assign(std::optional<Value> value, Value& target)
{
    if (value)
        target = *std::move(value);
    return value.has_value();
}

/// A step of a sequence, and what is said about it.
std::string writeLines(const OutputStep& step)
{
    auto text = "STEP " + writeStep(step) + '\n';
    if (step.ramp != OutputRamp{})
        text += "RAMP " + write(step.ramp) + '\n';
    if (step.endOn)
        text += "END " + write(*step.endOn) + '\n';
    if (step.faultDegrees)
        text += "ANGLE " + Kes::NumberText::write(*step.faultDegrees) + '\n';
    return text;
}

/// A line of a sequence that says something about its last step.
bool readAddition(std::string_view header, std::string_view parameters, OutputStep& step)
{
    if (isWord(header, "RAMP"))
        return assign(readRamp(parameters), step.ramp);
    if (isWord(header, "END")) {
        step.endOn = readEnd(parameters);
        return step.endOn.has_value();
    }
    if (!isWord(header, "ANGLE"))
        return false;
    step.faultDegrees = FieldText::readNumber(parameters);
    return step.faultDegrees.has_value();
}

/// False when the line makes no sense.
bool readLine(std::string_view line, std::size_t mostSteps, SequenceReading& reading)
{
    const auto header = takeUntil(line, ' ');
    if (!isWord(header, "STEP"))
        return !reading.sequence.empty() && readAddition(header, line, reading.sequence.back());
    reading.isTooLong = reading.sequence.size() >= mostSteps;
    auto step = readStep(line);
    if (step && !reading.isTooLong)
        reading.sequence.push_back(*std::move(step));
    return step.has_value();
}

} // namespace

std::string write(const OutputState& outputs)
{
    auto text = writeWaves(outputs);
    append(text, std::to_string(outputs.binaryOutputs));
    return text;
}

std::optional<OutputState> toOutputs(std::span<const double> numbers)
{
    if (numbers.size() != stateNumbers || !areFinite(numbers))
        return std::nullopt;
    const double mask = numbers.back();
    if (mask < 0.0 || mask > std::numeric_limits<std::uint32_t>::max() || mask != std::floor(mask))
        return std::nullopt;
    auto outputs = toWaves<OutputState>(numbers);
    outputs.binaryOutputs = static_cast<std::uint32_t>(mask);
    return outputs;
}

std::optional<OutputState> readOutputs(std::string_view text)
{
    const auto numbers = readNumbers(text, stateNumbers);
    return numbers ? toOutputs(*numbers) : std::nullopt;
}

std::optional<OutputRamp> toRamp(std::span<const double> numbers)
{
    if (numbers.size() != rampNumbers || !areFinite(numbers))
        return std::nullopt;
    return toWaves<OutputRamp>(numbers);
}

std::string write(const OutputRamp& ramp)
{
    return writeWaves(ramp);
}

std::optional<OutputRamp> readRamp(std::string_view parameters)
{
    const auto numbers = readNumbers(parameters, rampNumbers);
    return numbers ? toRamp(*numbers) : std::nullopt;
}

std::string write(DeviceTime time)
{
    return Kes::NumberText::write(static_cast<double>(time.count()) / microsecondsOfSecond);
}

std::optional<DeviceTime> toTime(double seconds)
{
    constexpr double most = 1000.0 * 366 * 24 * 3600;
    if (!(std::abs(seconds) <= most))
        return std::nullopt;
    return DeviceTime(std::llround(seconds * microsecondsOfSecond));
}

std::optional<DeviceTime> readSeconds(std::string_view text)
{
    const auto seconds = FieldText::readNumber(text);
    return seconds ? toTime(*seconds) : std::nullopt;
}

std::optional<std::int64_t> readMicroseconds(std::string_view text, bool isSigned)
{
    std::int64_t value = 0;
    const auto* last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, value);
    if (error != std::errc() || end != last || (value < 0 && !isSigned))
        return std::nullopt;
    return value;
}

std::string writeStep(const OutputStep& step)
{
    return write(step.duration) + ',' + write(step.outputs);
}

std::optional<OutputStep> readStep(std::string_view parameters)
{
    const auto duration = readSeconds(Kes::StringHelper::trim(takeUntil(parameters, ',')));
    const auto outputs = readOutputs(parameters);
    if (!duration || !outputs)
        return std::nullopt;
    return OutputStep{*outputs, *duration};
}

std::string write(const EndCondition& condition)
{
    std::string text = condition.join == EndCondition::Join::Any ? "ANY" : "ALL";
    append(text, write(condition.debounce));
    for (const auto& input : condition.inputs)
        appendCondition(text, input);
    return text;
}

std::optional<EndCondition> readEnd(std::string_view parameters)
{
    constexpr std::size_t mostInputs = 256;
    const auto fields = FieldText::split(parameters, ',', mostInputs + 2);
    if (!fields || fields->size() < 3)
        return std::nullopt;
    const bool isAny = isWord(fields->front(), "ANY");
    const auto debounce = readSeconds((*fields)[1]);
    if ((!isAny && !isWord(fields->front(), "ALL")) || !debounce)
        return std::nullopt;
    EndCondition condition({}, isAny ? EndCondition::Join::Any : EndCondition::Join::All, *debounce);
    for (std::size_t i = 2; i < fields->size(); ++i) {
        const auto input = readCondition((*fields)[i]);
        if (!input)
            return std::nullopt;
        condition.inputs.push_back(*input);
    }
    return condition;
}

std::optional<InputCondition> readCondition(std::string_view text)
{
    const auto digits = text.find_first_not_of("0123456789");
    if (digits == std::string_view::npos)
        return std::nullopt;
    const auto input = FieldText::readCount(text.substr(0, digits), std::numeric_limits<unsigned>::max());
    const auto kind = text.substr(digits);
    const bool isClosed = isWord(kind, "C") || isWord(kind, "CE");
    if (!input || (!isClosed && !isWord(kind, "O") && !isWord(kind, "OE")))
        return std::nullopt;
    return InputCondition{static_cast<unsigned>(*input), isClosed, kind.size() > 1};
}

std::string write(const OutputSequence& sequence)
{
    std::string text;
    for (const auto& step : sequence)
        text += writeLines(step);
    return text;
}

std::vector<std::string> writeInParts(const OutputSequence& sequence, std::size_t bytes)
{
    std::vector<std::string> parts;
    for (const auto& step : sequence) {
        if (parts.empty() || parts.back().size() >= bytes)
            parts.emplace_back();
        parts.back() += writeLines(step);
    }
    return parts;
}

SequenceReading readSequence(std::string_view lines, std::size_t mostSteps)
{
    SequenceReading reading;
    std::size_t number = 0;
    while (!lines.empty() && reading.isGood()) {
        ++number;
        const auto line = Kes::StringHelper::trim(takeUntil(lines, '\n'));
        if (!line.empty() && !readLine(line, mostSteps, reading))
            reading.wrongLine = number;
    }
    return reading;
}

std::string write(const OutputLimits& limits)
{
    std::string text;
    append(text, limits.maximumAmperes);
    append(text, limits.maximumVolts);
    append(text, limits.minimumHertz);
    append(text, limits.maximumHertz);
    append(text, std::to_string(limits.binaryInputs));
    append(text, std::to_string(limits.binaryOutputs));
    append(text, limits.maximumVoltAmperes);
    append(text, limits.continuousAmperes);
    append(text, std::to_string(limits.overloadDuration.count()));
    append(text, std::to_string(limits.maximumSteps));
    append(text, std::to_string(limits.releaseTime.count()));
    return text;
}

std::optional<OutputLimits> readLimits(std::string_view text)
{
    constexpr std::size_t count = 11;
    constexpr std::size_t largest = std::numeric_limits<unsigned>::max();
    const auto fields = splitExactly(text, count);
    if (!fields)
        return std::nullopt;
    std::array<double, count> numbers{};
    for (const std::size_t i : {0U, 1U, 2U, 3U, 6U, 7U})
        if (!assign(FieldText::readNumber((*fields)[i]), numbers[i]))
            return std::nullopt;
    const auto inputs = FieldText::readCount((*fields)[4], largest);
    const auto outputs = FieldText::readCount((*fields)[5], largest);
    const auto overload = readMicroseconds((*fields)[8]);
    const auto steps = FieldText::readCount((*fields)[9], largest);
    const auto release = FieldText::readCount((*fields)[10], largest);
    if (!inputs || !outputs || !overload || !steps || !release)
        return std::nullopt;
    return OutputLimits{numbers[0],
                        numbers[1],
                        numbers[2],
                        numbers[3],
                        static_cast<unsigned>(*inputs),
                        static_cast<unsigned>(*outputs),
                        numbers[6],
                        numbers[7],
                        DeviceTime(*overload),
                        *steps,
                        std::chrono::milliseconds(*release)};
}

} // namespace KesDriver::ValueText
