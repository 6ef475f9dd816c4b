#pragma once

#include <Overcurrent/data/RelaySettings.h>
#include <Overcurrent/data/TestPlan.h>

#include <KesMeasure/TextLine.h>

#include <string>
#include <vector>

/// Settings and plan as lines for people, in the language of the process. Any thread.
namespace Overcurrent::SettingsSummary {

using Line = KesMeasure::TextLine;

/// The settings that play a part.
std::vector<Line> describe(const RelaySettings& settings);
std::vector<Line> describe(const TestPlan& plan);

/// "1.010 A (1.01 x Is)".
std::string currentText(const RelaySettings& settings, double multiple);

} // namespace Overcurrent::SettingsSummary
