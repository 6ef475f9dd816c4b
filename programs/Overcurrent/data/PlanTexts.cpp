#include <Overcurrent/data/PlanTexts.h>

#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/NumberText.h>
#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/StringHelper.h>
#include <KesMeasure/ScreenNumber.h>

namespace Overcurrent {

namespace {

using Kes::StringHelper::format;
using lng::Overcurrent::get;

/// The place of each number in a plan, and the keys of its name.
template <typename Plan>
auto numbersOf(Plan& plan)
{
    struct Number {
        PlanField field;
        decltype(&plan.timeout) value;
        const char* nameKey;
        const char* partKey = nullptr;
    };
    return std::array<Number, 12>{{
        {PlanField::Timeout, &plan.timeout, "Plan.timeout"},
        {PlanField::Pause, &plan.pause, "Plan.pause"},
        {PlanField::PickUpFrom, &plan.pickUp.from, "PlanView.pickUpRamp", "PlanView.from"},
        {PlanField::PickUpTo, &plan.pickUp.to, "PlanView.pickUpRamp", "PlanView.to"},
        {PlanField::PickUpStep, &plan.pickUp.step, "PlanView.pickUpRamp", "PlanView.step"},
        {PlanField::PickUpDwell, &plan.pickUp.dwell, "PlanView.pickUpRamp", "PlanView.dwell"},
        {PlanField::DropOffFrom, &plan.dropOff.from, "PlanView.dropOffRamp", "PlanView.from"},
        {PlanField::DropOffTo, &plan.dropOff.to, "PlanView.dropOffRamp", "PlanView.to"},
        {PlanField::DropOffStep, &plan.dropOff.step, "PlanView.dropOffRamp", "PlanView.step"},
        {PlanField::DropOffDwell, &plan.dropOff.dwell, "PlanView.dropOffRamp", "PlanView.dwell"},
        {PlanField::PickUpTolerance, &plan.pickUpTolerancePercent, "Plan.pickUpTolerance"},
        {PlanField::MinimumRatio, &plan.minimumRatio, "Plan.minimumRatio"},
    }};
}

Kes::Result readNumber(PlanField field, const std::string& text, double& value)
{
    const auto number = Kes::NumberText::read(text);
    if (!number)
        return Kes::Result::failure(format(get("Plan.notNumbers"), PlanTexts::nameOf(field), text));
    value = *number;
    return true;
}

Kes::Result readRepetitions(const std::string& text, unsigned& repetitions)
{
    const auto number = Kes::NumberText::readInteger(text);
    if (!number || *number < 0 || *number > 9999)
        return Kes::Result::failure(
            format(get("Plan.notWhole"), PlanTexts::nameOf(PlanField::Repetitions), text));
    repetitions = static_cast<unsigned>(*number);
    return true;
}

std::vector<std::string> splitMultiples(const std::string& text)
{
    const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; };
    std::vector<std::string> words{std::string()};
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const bool isListComma = c == ',' && (i + 1 == text.size() || isBlank(text[i + 1]));
        if (!isBlank(c) && c != ';' && !isListComma)
            words.back() += c;
        else if (!words.back().empty())
            words.emplace_back();
    }
    if (words.back().empty())
        words.pop_back();
    return words;
}

} // namespace

PlanTexts::PlanTexts(const TestPlan& plan)
    : choices{plan.faults, plan.direction, plan.outputsPerPhase, plan.goesOn}
{
    auto& multiples = (*this)[PlanField::Multiples];
    for (const double multiple : plan.multiples)
        multiples += (multiples.empty() ? "" : "; ") + KesMeasure::ScreenNumber::shortest(multiple);
    (*this)[PlanField::Repetitions] = std::to_string(plan.repetitions);
    for (const auto& number : numbersOf(plan))
        (*this)[number.field] = KesMeasure::ScreenNumber::shortest(*number.value);
}

std::string PlanTexts::nameOf(PlanField field)
{
    const TestPlan plan;
    for (const auto& number : numbersOf(plan))
        if (number.field == field)
            return number.partKey ? format(get("PlanView.fieldName"), std::string(get(number.nameKey)),
                                           std::string(get(number.partKey)))
                                  : get(number.nameKey);
    return get(field == PlanField::Repetitions ? "Plan.repetitions" : "PlanView.multiples");
}

Kes::Result PlanTexts::_readField(PlanField field, TestPlan& plan) const
{
    if (field == PlanField::Multiples) {
        plan.multiples.clear();
        for (const auto& word : splitMultiples((*this)[field])) {
            plan.multiples.emplace_back();
            if (auto result = readNumber(field, word, plan.multiples.back()); !result)
                return result;
        }
    }
    if (field == PlanField::Repetitions)
        return readRepetitions((*this)[field], plan.repetitions);
    for (const auto& number : numbersOf(plan))
        if (number.field == field)
            return readNumber(field, (*this)[field], *number.value);
    return true;
}

void PlanTexts::_choose(const PlanChoices& choices, TestPlan& plan)
{
    plan.faults = choices.faults;
    plan.direction = choices.direction;
    plan.outputsPerPhase = choices.outputsPerPhase;
    plan.goesOn = choices.goesOn;
}

std::optional<PlanTextError> PlanTexts::read(TestPlan& plan) const
{
    // Values that only make sense together are taken together.
    TestPlan whole = plan;
    _choose(choices, whole);
    bool isReadable = true;
    for (std::size_t i = 0; i < _texts.size(); ++i)
        isReadable = _readField(static_cast<PlanField>(i), whole) && isReadable;
    if (isReadable && whole.check()) {
        plan = whole;
        return std::nullopt;
    }
    const TestPlan before = plan;
    std::optional<PlanTextError> error;
    TestPlan chosen = plan;
    _choose(choices, chosen);
    if (const auto result = chosen.check())
        plan = chosen;
    else
        error = {PlanField::Count, Kes::ObjectErrorHelper::toDisplayString({result.getError()})};
    for (std::size_t i = 0; i < _texts.size(); ++i) {
        const auto field = static_cast<PlanField>(i);
        TestPlan changed = plan;
        auto result = _readField(field, changed);
        if (result)
            result = changed.check();
        if (result)
            plan = changed;
        else if (!error)
            error = {field, Kes::ObjectErrorHelper::toDisplayString({result.getError()})};
    }
    // One may make sense only beside another that has just been taken.
    return plan == before ? error : read(plan);
}

} // namespace Overcurrent
