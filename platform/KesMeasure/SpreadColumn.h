#pragma once

#include <KesCommon/Export.h>
#include <KesMeasure/ResultTable.h>

#include <string>
#include <vector>

namespace KesMeasure {

/// Makes of a table of values that were measured once one of values that were measured several times: the
/// column "measured" becomes that of the means, and one of the spreads stands behind it, a text for each row.
/// `unit` stands in the titles; empty: none. Any thread.
KES_EXPORT void addSpreadColumn(ResultTable& table, const std::string& unit,
                                const std::vector<std::string>& spreads);

} // namespace KesMeasure
