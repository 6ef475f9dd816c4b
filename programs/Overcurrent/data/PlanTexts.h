#pragma once

#include <Overcurrent/data/TestPlan.h>

#include <KesCommon/Result.h>

#include <array>
#include <cstddef>
#include <string>

namespace Overcurrent {

/// The values of a plan that a user types, in the order of their editors.
enum class PlanField : std::size_t {
    Multiples,
    Timeout,
    Pause,
    PickUpFrom,
    PickUpTo,
    PickUpStep,
    PickUpDwell,
    DropOffFrom,
    DropOffTo,
    DropOffStep,
    DropOffDwell,
    PickUpTolerance,
    MinimumRatio,
    Count
};

/// A plan as texts, one per field. A value. Any thread.
class PlanTexts {
public:
    PlanTexts() = default;
    explicit PlanTexts(const TestPlan& plan);

    std::string& operator[](PlanField field) { return _texts[static_cast<std::size_t>(field)]; }
    const std::string& operator[](PlanField field) const { return _texts[static_cast<std::size_t>(field)]; }

    /// Reads what users type: a point or a comma in numbers; blanks, semicolons, or commas followed by a
    /// blank between the multiples. Refuses what is not a number; `plan` then is not to be used. Whether the
    /// numbers make sense is for `TestPlan::check` to say.
    Kes::Result read(TestPlan& plan) const;

    bool operator==(const PlanTexts&) const = default;

private:
    std::array<std::string, static_cast<std::size_t>(PlanField::Count)> _texts;
};

} // namespace Overcurrent
