#pragma once

#include <KesCommon/Export.h>

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace xmlpp {
class Element;
}

namespace KesMeasure {

/// Reads a document within the limits of `Kes::BoundedXmlReader`, and hands its root to the function.
/// False when the text is no such document, its root has another name, or the function says so or throws.
KES_EXPORT bool readXml(const std::string& text, const char* rootName,
                        const std::function<bool(const xmlpp::Element&)>& read);

/// Builds a document with the function and gives its text, the same bytes for the same content.
KES_EXPORT std::string writeXml(const char* rootName, const std::function<void(xmlpp::Element&)>& write);

/// Takes typed values out of an element's attributes and remembers whether one was missing or unreadable: a
/// reader takes all that it needs and asks `isGood` once at the end. Any thread, one at a time for each
/// document, as all functions here.
class KES_EXPORT XmlAttributes {
public:
    /// The element outlives it.
    explicit XmlAttributes(const xmlpp::Element& element) : _element(element) {}

    /// False once an attribute was not what was asked for.
    bool isGood() const { return _isGood; }

    /// A decimal number, as `Kes::NumberText::read` takes it; 0 for anything else.
    double number(const char* name);
    /// Decimal digits with a sign; 0 for anything else.
    long long integer(const char* name);
    /// "true" or "false"; false for anything else.
    bool boolean(const char* name);
    /// UTF-8; empty when the attribute is missing.
    std::string text(const char* name);

    /// The value that goes with the text of the attribute; the first one of the table for any other text.
    template <typename Value, std::size_t N>
    Value choice(const char* name, const std::pair<const char*, Value> (&table)[N])
    {
        const std::string found = text(name);
        for (const auto& [word, value] : table)
            if (found == word)
                return value;
        _isGood = false;
        return table[0].second;
    }

private:
    const xmlpp::Element& _element;
    bool _isGood = true;
};

/// Writes what `XmlAttributes` reads. A number in the form that reads back as the same one.
KES_EXPORT void setAttribute(xmlpp::Element& element, const char* name, double value);
KES_EXPORT void setAttribute(xmlpp::Element& element, const char* name, const std::string& value);

/// The word for a value of a table such as `XmlAttributes::choice` takes; empty for a value that is not in
/// it.
template <typename Value, std::size_t N>
std::string wordOf(Value value, const std::pair<const char*, Value> (&table)[N])
{
    for (const auto& [word, candidate] : table)
        if (candidate == value)
            return word;
    return {};
}

} // namespace KesMeasure
