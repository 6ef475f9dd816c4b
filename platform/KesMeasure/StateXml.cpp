#include <KesMeasure/StateXml.h>

#include <utility>

namespace KesMeasure::StateXml {

namespace {

constexpr std::pair<const char*, MeasureState> states[] = {{"noOperation", MeasureState::NoOperation},
                                                           {"measured", MeasureState::Measured},
                                                           {"contactEarly", MeasureState::ContactEarly},
                                                           {"notReset", MeasureState::NotReset},
                                                           {"noDropOff", MeasureState::NoDropOff}};

constexpr std::pair<const char*, RunEnd> ends[] = {{"stopped", RunEnd::Stopped},
                                                   {"complete", RunEnd::Complete},
                                                   {"fault", RunEnd::Fault},
                                                   {"ended", RunEnd::Ended}};

} // namespace

void write(xmlpp::Element& element, MeasureState state)
{
    setAttribute(element, "state", wordOf(state, states));
}

MeasureState readState(XmlAttributes& attributes)
{
    return attributes.choice("state", states);
}

void write(xmlpp::Element& element, RunEnd end)
{
    setAttribute(element, "end", wordOf(end == RunEnd::Running ? RunEnd::Stopped : end, ends));
}

RunEnd readEnd(XmlAttributes& attributes)
{
    return attributes.choice("end", ends);
}

} // namespace KesMeasure::StateXml
