// The measured values of a test with its settings and its plan (test-results.xml).

#include "XmlPart.h"

#include <Overcurrent/data/ResultsXml.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    using Overcurrent::TestResults;
    namespace ResultsXml = Overcurrent::ResultsXml;
    checkXmlPart<TestResults>(
        bytes, size, "results",
        [](const xmlpp::Element& element, auto form) { return ResultsXml::read(element, form); },
        [](xmlpp::Element& element, const TestResults& results) { ResultsXml::write(element, results); });
    return 0;
}
