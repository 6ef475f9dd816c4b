#pragma once

#include <string>

namespace KesMeasure {

/// A setting or a part of a plan as people read it, in the language of the process. A value.
struct TextLine {
    std::string name;
    /// With its unit.
    std::string value;

    bool operator==(const TextLine&) const = default;
};

} // namespace KesMeasure
