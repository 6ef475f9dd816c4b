#pragma once

#include <Overcurrent/data/ArchiveForm.h>
#include <Overcurrent/data/TestResults.h>

#include <optional>
#include <string>

namespace xmlpp {
class Element;
}

/// The measured values as an XML element, with the settings and the plan that they belong to; without the
/// circumstances of the test (device, beginning). What has been read is complete and makes sense. Any thread.
namespace Overcurrent::ResultsXml {

/// A test that is still under way is written as one that was stopped: that is what it would be for a reader.
void write(xmlpp::Element& element, const TestResults& results);
/// The same as a document, for files and their checksum; an empty one without results (null).
std::string toText(const TestResults* results);
/// Nothing when it is not what a test with its own settings and plan can have given.
std::optional<TestResults> read(const xmlpp::Element& element, ArchiveForm form = ArchiveForm::Present);

} // namespace Overcurrent::ResultsXml
