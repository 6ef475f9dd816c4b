// The circumstances of a test (info.xml), beside results and without any.

#include "XmlPart.h"

#include <Overcurrent/data/InfoXml.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    using Results = std::optional<Overcurrent::TestResults>;
    namespace InfoXml = Overcurrent::InfoXml;
    for (const Results& beside : {Results(Overcurrent::TestResults()), Results()})
        checkXmlPart<Results>(
            bytes, size, "info",
            [&](const xmlpp::Element& element, auto) {
                Results results = beside;
                return InfoXml::read(element, results) ? std::optional(results) : std::nullopt;
            },
            [](xmlpp::Element& element, const Results& results) { InfoXml::write(element, results); });
    return 0;
}
