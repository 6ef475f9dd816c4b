#include <Overcurrent/data/InfoXml.h>

#include <Overcurrent/data/XmlAttributes.h>

#include <libxml++/libxml++.h>

#include <string>
#include <utility>

namespace Overcurrent::InfoXml {

namespace {

constexpr const char* program = "kes-overcurrent";
constexpr const char* form = "2";

constexpr std::pair<const char*, Origin> origins[] = {
    {"false", Origin::Device}, {"true", Origin::Simulated}, {"unknown", Origin::Unknown}};

bool readTest(const xmlpp::Element& root, std::optional<TestResults>& results)
{
    const auto* test = dynamic_cast<const xmlpp::Element*>(root.get_first_child("test"));
    if (!test || !results)
        return !test && !results;
    XmlAttributes attributes(*test);
    const auto origin = attributes.choice("simulated", origins);
    const auto device = attributes.text("device");
    const auto startedAt = attributes.text("startedAt");
    if (!attributes.isGood())
        return false;
    results->origin = origin;
    results->device = device;
    results->startedAt = startedAt;
    return true;
}

} // namespace

void write(xmlpp::Element& element, const std::optional<TestResults>& results)
{
    setAttribute(element, "program", std::string(program));
    setAttribute(element, "format", std::string(form));
    if (!results)
        return;
    auto& test = *element.add_child("test");
    setAttribute(test, "simulated", wordOf(results->origin, origins));
    setAttribute(test, "device", results->device);
    setAttribute(test, "startedAt", results->startedAt);
}

bool read(const xmlpp::Element& element, std::optional<TestResults>& results)
{
    XmlAttributes attributes(element);
    return attributes.text("program") == program && attributes.text("format") == form &&
           readTest(element, results);
}

} // namespace Overcurrent::InfoXml
