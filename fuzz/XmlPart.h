#pragma once

#include "Require.h"

#include <Overcurrent/data/XmlAttributes.h>

#include <libxml++/libxml++.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

/// Reads the bytes as a document around one value. A value that was read can be written, and what was written
/// reads back as the same.
template <typename Value, typename Read, typename Write>
void checkXmlPart(const std::uint8_t* bytes, std::size_t size, const char* root, Read readElement,
                  Write writeElement)
{
    const auto read = [&](const std::string& text) {
        std::optional<Value> value;
        const bool isRead = Overcurrent::readXml(text, root, [&](const xmlpp::Element& element) {
            value = readElement(element);
            return value.has_value();
        });
        return isRead ? value : std::nullopt;
    };
    const auto value = read(std::string(reinterpret_cast<const char*>(bytes), size));
    if (!value)
        return;
    const std::string written =
        Overcurrent::writeXml(root, [&](xmlpp::Element& element) { writeElement(element, *value); });
    const auto again = read(written);
    require(again.has_value(), "what was written is read");
    require(*again == *value, "what was written reads back as the same");
}
