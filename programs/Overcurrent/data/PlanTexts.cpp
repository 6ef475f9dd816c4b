#include <Overcurrent/data/PlanTexts.h>

#include <Overcurrent/text/OvercurrentText.h>
#include <Overcurrent/text/ScreenNumber.h>

#include <KesCommon/NumberText.h>
#include <KesCommon/StringHelper.h>

namespace Overcurrent {

namespace {

/// The place of each number in a plan.
template <typename Plan>
auto numbersOf(Plan& plan)
{
    using Field = std::pair<PlanField, decltype(&plan.timeout)>;
    return std::array<Field, 12>{{
        {PlanField::Timeout, &plan.timeout},
        {PlanField::Pause, &plan.pause},
        {PlanField::PickUpFrom, &plan.pickUp.from},
        {PlanField::PickUpTo, &plan.pickUp.to},
        {PlanField::PickUpStep, &plan.pickUp.step},
        {PlanField::PickUpDwell, &plan.pickUp.dwell},
        {PlanField::DropOffFrom, &plan.dropOff.from},
        {PlanField::DropOffTo, &plan.dropOff.to},
        {PlanField::DropOffStep, &plan.dropOff.step},
        {PlanField::DropOffDwell, &plan.dropOff.dwell},
        {PlanField::PickUpTolerance, &plan.pickUpTolerancePercent},
        {PlanField::MinimumRatio, &plan.minimumRatio},
    }};
}

Kes::Result readNumber(const std::string& text, double& value)
{
    const auto number = Kes::NumberText::read(text);
    if (!number)
        return Kes::Result::failure(
            Kes::StringHelper::format(lng::Overcurrent::get("Plan.notNumbers"), text));
    value = *number;
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
{
    auto& multiples = (*this)[PlanField::Multiples];
    for (const double multiple : plan.multiples)
        multiples += (multiples.empty() ? "" : "; ") + ScreenNumber::shortest(multiple);
    for (const auto& [field, number] : numbersOf(plan))
        (*this)[field] = ScreenNumber::shortest(*number);
}

Kes::Result PlanTexts::read(TestPlan& plan) const
{
    plan.multiples.clear();
    for (const auto& word : splitMultiples((*this)[PlanField::Multiples])) {
        plan.multiples.emplace_back();
        if (auto result = readNumber(word, plan.multiples.back()); !result)
            return result;
    }
    for (const auto& [field, number] : numbersOf(plan))
        if (auto result = readNumber((*this)[field], *number); !result)
            return result;
    return true;
}

} // namespace Overcurrent
