#pragma once

#include <KesCommon/Export.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace xmlpp {
class Element;
}

/// The single values of something that was measured several times, as children "single" of its element. Any
/// thread.
namespace KesMeasure::SinglesXml {

/// How often one thing may be measured.
inline constexpr std::size_t mostRepetitions = 20;

/// Appends them, in their order; each reads back as the same number.
KES_EXPORT void write(xmlpp::Element& element, const std::vector<double>& singles);
/// Empty when there are none; nothing when they are no finite numbers or too many.
KES_EXPORT std::optional<std::vector<double>> read(const xmlpp::Element& element);

} // namespace KesMeasure::SinglesXml
