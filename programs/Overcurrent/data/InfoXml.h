#pragma once

#include <Overcurrent/data/ArchiveForm.h>
#include <Overcurrent/data/TestResults.h>

#include <optional>

namespace xmlpp {
class Element;
}

/// What the file says of itself, as an XML element: program, version of the form and, when a test has been
/// made, its circumstances (device, beginning). Any thread.
namespace Overcurrent::InfoXml {

void write(xmlpp::Element& element, const std::optional<TestResults>& results);
/// Nothing when the element is not that of such a file.
std::optional<ArchiveForm> readForm(const xmlpp::Element& element);
/// Adds the circumstances to the results. False when the element is not that of such a file, or tells of a
/// test where there are no results, or the other way round; nothing has been changed then.
bool read(const xmlpp::Element& element, std::optional<TestResults>& results);

} // namespace Overcurrent::InfoXml
