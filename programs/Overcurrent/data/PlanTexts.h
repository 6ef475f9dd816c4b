#pragma once

#include <Overcurrent/data/TestPlan.h>

#include <KesCommon/Result.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace Overcurrent {

/// The values of a plan that a user types, in the order of their editors.
enum class PlanField : std::size_t {
    /// Several numbers, as `TestPlan::multiples`; every other field has one.
    Multiples,
    /// In seconds, as the next one.
    Timeout,
    Pause,
    /// Of the ramps: from, to and step as multiples, the step time in seconds; see `Ramp`.
    PickUpFrom,
    PickUpTo,
    PickUpStep,
    PickUpDwell,
    DropOffFrom,
    DropOffTo,
    DropOffStep,
    DropOffDwell,
    /// In percent.
    PickUpTolerance,
    MinimumRatio,
    /// A whole number.
    Repetitions,
    Count
};

/// A text that is no value of a plan, or choices that make none. A value.
struct PlanTextError {
    /// `Count` for the choices.
    PlanField field = PlanField::Count;
    /// For people; names the field.
    std::string text;
};

/// What a user chooses in a plan, as in `TestPlan`. A value.
struct PlanChoices {
    std::vector<Fault> faults;
    FaultDirection direction = FaultDirection::Forward;
    unsigned outputsPerPhase = 1;
    bool goesOn = false;

    bool operator==(const PlanChoices&) const = default;
};

/// A plan as texts, one per field, and its choices. A value. Any thread.
class PlanTexts {
public:
    PlanChoices choices;

    PlanTexts() = default;
    /// The numbers as users write them: the shortest form, with the decimal sign of the language of the
    /// process.
    explicit PlanTexts(const TestPlan& plan);

    std::string& operator[](PlanField field) { return _texts[static_cast<std::size_t>(field)]; }
    const std::string& operator[](PlanField field) const { return _texts[static_cast<std::size_t>(field)]; }

    /// What users know the field by, in the language of the process.
    static std::string nameOf(PlanField field);

    /// Reads what users type: a point or a comma in numbers; blanks, semicolons, or commas followed by a
    /// blank between the multiples. What is no number or makes no sense leaves its value in the plan as it
    /// is, and does not keep the others from being taken; the first such text is the error. The choices are
    /// taken all or none.
    std::optional<PlanTextError> read(TestPlan& plan) const;

    bool operator==(const PlanTexts&) const = default;

private:
    static void _choose(const PlanChoices& choices, TestPlan& plan);
    /// Reads one field; what it means beside the others is not looked at.
    Kes::Result _readField(PlanField field, TestPlan& plan) const;

    std::array<std::string, static_cast<std::size_t>(PlanField::Count)> _texts;
};

} // namespace Overcurrent
