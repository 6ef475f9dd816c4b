#include <Overcurrent/data/XmlAttributes.h>

#include <KesCommon/NumberText.h>

#include <libxml++/libxml++.h>
#include <libxml/parser.h>

namespace Overcurrent {

namespace {

/// Far above what is written here; keeps a hostile file from filling the memory with nodes.
constexpr std::size_t maximumBytes = std::size_t{4} << 20;

} // namespace

bool readXml(const std::string& text, const char* rootName,
             const std::function<bool(const xmlpp::Element&)>& read)
{
    // What is written here has no document type; one could only define entities.
    if (text.size() > maximumBytes || text.find("<!DOCTYPE") != std::string::npos)
        return false;
    try {
        xmlpp::DomParser parser;
        parser.set_substitute_entities(false);
        parser.set_validate(false);
        parser.set_throw_messages(true);
        parser.set_parser_options(XML_PARSE_NONET);
        parser.parse_memory_raw(reinterpret_cast<const unsigned char*>(text.data()),
                                static_cast<xmlpp::Parser::size_type>(text.size()));
        const auto* document = parser.get_document();
        const auto* root = document ? document->get_root_node() : nullptr;
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

} // namespace Overcurrent
