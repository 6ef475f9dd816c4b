#pragma once

#include "Require.h"

#include <KesMeasure/XmlAttributes.h>
#include <Overcurrent/data/ArchiveForm.h>

#include <libxml++/libxml++.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

/// Reads the bytes as a document around one value, in the present form or else in an older one. A value
/// that was read can be written, and what was written reads back as the same.
template <typename Value, typename Read, typename Write>
void checkXmlPart(const std::uint8_t* bytes, std::size_t size, const char* root, Read readElement,
                  Write writeElement)
{
    const auto read = [&](const std::string& text) {
        std::optional<Value> value;
        const bool isRead = KesMeasure::readXml(text, root, [&](const xmlpp::Element& element) {
            using Overcurrent::ArchiveForm;
            for (const auto form : {ArchiveForm::Present, ArchiveForm::Third, ArchiveForm::Second})
                if (!value)
                    value = readElement(element, form);
            return value.has_value();
        });
        return isRead ? value : std::nullopt;
    };
    const auto value = read(std::string(reinterpret_cast<const char*>(bytes), size));
    if (!value)
        return;
    const std::string written =
        KesMeasure::writeXml(root, [&](xmlpp::Element& element) { writeElement(element, *value); });
    const auto again = read(written);
    require(again.has_value(), "what was written is read");
    require(*again == *value, "what was written reads back as the same");
}
