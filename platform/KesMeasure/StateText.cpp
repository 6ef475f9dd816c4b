#include <KesMeasure/StateText.h>

#include <KesMeasure/MeasureText.h>

namespace KesMeasure {

const char* stateText(MeasureState state, bool isPassed)
{
    using lng::Measure::get;
    switch (state) {
    case MeasureState::NoOperation:
        return get("State.noOperation");
    case MeasureState::ContactEarly:
        return get("State.contactEarly");
    case MeasureState::NotReset:
        return get("State.notReset");
    case MeasureState::NoDropOff:
        return get("State.noDropOff");
    case MeasureState::Measured:
        break;
    }
    return get(isPassed ? "State.passed" : "State.failed");
}

} // namespace KesMeasure
