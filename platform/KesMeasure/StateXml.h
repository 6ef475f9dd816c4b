#pragma once

#include <KesCommon/Export.h>
#include <KesMeasure/TestState.h>
#include <KesMeasure/XmlAttributes.h>

/// The states of measurements and tests as XML attributes. Any thread.
namespace KesMeasure::StateXml {

/// The attribute "state".
KES_EXPORT void write(xmlpp::Element& element, MeasureState state);
KES_EXPORT MeasureState readState(XmlAttributes& attributes);

/// The attribute "end". A test that is still under way is written as one that was stopped: that is what it
/// would be for a reader.
KES_EXPORT void write(xmlpp::Element& element, RunEnd end);
KES_EXPORT RunEnd readEnd(XmlAttributes& attributes);

} // namespace KesMeasure::StateXml
