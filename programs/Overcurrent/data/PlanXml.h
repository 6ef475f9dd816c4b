#pragma once

#include <Overcurrent/data/ArchiveForm.h>
#include <Overcurrent/data/RelaySettings.h>
#include <Overcurrent/data/TestPlan.h>

#include <optional>

namespace xmlpp {
class Element;
}

/// Plan and settings as XML elements. What has been read is complete and makes sense; what an older form
/// does not hold has its default. Any thread.
namespace Overcurrent::PlanXml {

/// In the present form. The number of repetitions is left out when it is 1: files from before there were any
/// keep their checksum.
void write(xmlpp::Element& element, const TestPlan& plan);
/// Nothing when a value is missing, unreadable or makes no sense; see `TestPlan::check`.
std::optional<TestPlan> read(const xmlpp::Element& element, ArchiveForm form = ArchiveForm::Present);

void write(xmlpp::Element& element, const RelaySettings& settings);
std::optional<RelaySettings> readSettings(const xmlpp::Element& element,
                                          ArchiveForm form = ArchiveForm::Present);

} // namespace Overcurrent::PlanXml
