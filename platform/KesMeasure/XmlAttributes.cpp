#include <KesMeasure/XmlAttributes.h>

#include <KesCommon/BoundedXmlReader.h>
#include <KesCommon/NumberText.h>

#include <libxml++/libxml++.h>

namespace KesMeasure {

bool readXml(const std::string& text, const char* rootName,
             const std::function<bool(const xmlpp::Element&)>& read)
{
    auto parsed = Kes::BoundedXmlReader().read(text);
    if (!parsed)
        return false;
    try {
        const xmlpp::Document document(parsed.release());
        const auto* root = document.get_root_node();
        return root && root->get_name() == rootName && read(*root);
    } catch (const std::exception&) {
        return false;
    }
}

std::string writeXml(const char* rootName, const std::function<void(xmlpp::Element&)>& write)
{
    xmlpp::Document document;
    write(*document.create_root_node(rootName));
    return document.write_to_string_formatted("UTF-8").raw();
}

double XmlAttributes::number(const char* name)
{
    const auto value = Kes::NumberText::read(text(name));
    _isGood = _isGood && value;
    return value.value_or(0.0);
}

long long XmlAttributes::integer(const char* name)
{
    const auto value = Kes::NumberText::readInteger(text(name));
    _isGood = _isGood && value;
    return value.value_or(0);
}

bool XmlAttributes::boolean(const char* name)
{
    static constexpr std::pair<const char*, bool> words[] = {{"false", false}, {"true", true}};
    return choice(name, words);
}

std::string XmlAttributes::text(const char* name)
{
    const auto* attribute = _element.get_attribute(name);
    _isGood = _isGood && attribute;
    return attribute ? attribute->get_value().raw() : std::string();
}

void setAttribute(xmlpp::Element& element, const char* name, double value)
{
    element.set_attribute(name, Kes::NumberText::write(value));
}

void setAttribute(xmlpp::Element& element, const char* name, const std::string& value)
{
    element.set_attribute(name, value);
}

} // namespace KesMeasure
