#pragma once

#include <Overcurrent/data/RelaySettings.h>
#include <Overcurrent/data/TestPlan.h>
#include <Overcurrent/data/TestResults.h>

#include <KesMeasure/TextLine.h>

#include <string>
#include <vector>

/// Settings and plan as lines for people, in the language of the process. Any thread.
namespace Overcurrent::SettingsSummary {

using Line = KesMeasure::TextLine;

/// The settings that play a part; of the stages those in use.
std::vector<Line> describe(const RelaySettings& settings);
/// Without the ramps when the settings say that pick-up and drop-off are not measured.
std::vector<Line> describe(const TestPlan& plan, const RelaySettings& settings);

/// "I>>".
std::string nameOf(StageId stage);

/// "1.005 A (1.00 … 1.01 × Is)"; Is is the lowest pick-up current in amperes.
std::string intervalText(double pickUpCurrent, const RampResult& ramp);

} // namespace Overcurrent::SettingsSummary
