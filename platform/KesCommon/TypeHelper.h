#pragma once

#include <KesCommon/Export.h>

#include <string>
#include <typeinfo>

namespace Kes::TypeHelper {

/// The name of a type without the namespaces and classes around it, at every level of its template
/// arguments, which are kept: "Kes::List<std::pair<int, ns::Item> >" gives "List<pair<int, Item> >".
/// Stable between runs, so it may name files. Any thread.
KES_EXPORT std::string getShortTypeName(const std::type_info& type);

} // namespace Kes::TypeHelper
