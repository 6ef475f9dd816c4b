#pragma once

#include <KesCommon/Export.h>
#include <KesMeasure/TestState.h>

namespace KesMeasure {

/// How a measurement ended, in the words of the column of verdicts and in the language of the process;
/// `isPassed` plays a part for a measured one only. Any thread.
KES_EXPORT const char* stateText(MeasureState state, bool isPassed);

} // namespace KesMeasure
