#include <Overcurrent/data/InfoXml.h>

#include <KesMeasure/XmlAttributes.h>

#include <libxml++/libxml++.h>

#include <string>
#include <utility>

namespace Overcurrent::InfoXml {

namespace {

using KesMeasure::setAttribute;
using KesMeasure::wordOf;
using KesMeasure::XmlAttributes;

constexpr const char* program = "kes-overcurrent";

constexpr std::pair<const char*, ArchiveForm> forms[] = {{"3", ArchiveForm::Present},
                                                         {"2", ArchiveForm::Former}};

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
    setAttribute(element, "format", wordOf(ArchiveForm::Present, forms));
    if (!results)
        return;
    auto& test = *element.add_child("test");
    setAttribute(test, "simulated", wordOf(results->origin, origins));
    setAttribute(test, "device", results->device);
    setAttribute(test, "startedAt", results->startedAt);
}

std::optional<ArchiveForm> readForm(const xmlpp::Element& element)
{
    XmlAttributes attributes(element);
    const auto form = attributes.choice("format", forms);
    return attributes.text("program") == program && attributes.isGood() ? std::optional(form) : std::nullopt;
}

bool read(const xmlpp::Element& element, std::optional<TestResults>& results)
{
    return readForm(element) && readTest(element, results);
}

} // namespace Overcurrent::InfoXml
