#include <KesMeasure/SinglesXml.h>

#include <KesMeasure/XmlAttributes.h>

#include <libxml++/libxml++.h>

#include <cmath>

namespace KesMeasure::SinglesXml {

namespace {

constexpr const char* childName = "single";
constexpr const char* valueName = "value";

} // namespace

void write(xmlpp::Element& element, const std::vector<double>& singles)
{
    for (const double value : singles)
        setAttribute(*element.add_child(childName), valueName, value);
}

std::optional<std::vector<double>> read(const xmlpp::Element& element)
{
    std::vector<double> singles;
    for (const auto* child : element.get_children(childName)) {
        const auto* single = dynamic_cast<const xmlpp::Element*>(child);
        if (!single || singles.size() == mostRepetitions)
            return std::nullopt;
        XmlAttributes attributes(*single);
        singles.push_back(attributes.number(valueName));
        if (!attributes.isGood() || !std::isfinite(singles.back()))
            return std::nullopt;
    }
    return singles;
}

} // namespace KesMeasure::SinglesXml
