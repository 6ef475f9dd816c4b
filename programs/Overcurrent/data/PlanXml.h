#pragma once

#include <Overcurrent/data/RelaySettings.h>
#include <Overcurrent/data/TestPlan.h>

#include <optional>

namespace xmlpp {
class Element;
}

/// Plan and settings as XML elements. What has been read is complete and makes sense. Any thread.
namespace Overcurrent::PlanXml {

void write(xmlpp::Element& element, const TestPlan& plan);
std::optional<TestPlan> read(const xmlpp::Element& element);

void write(xmlpp::Element& element, const RelaySettings& settings);
std::optional<RelaySettings> readSettings(const xmlpp::Element& element);

} // namespace Overcurrent::PlanXml
