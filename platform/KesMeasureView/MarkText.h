#pragma once

#include <KesCommon/Export.h>
#include <KesMeasure/Mark.h>

#include <string>

namespace KesMeasure {

/// A verdict's word with a sign before it that differs in shape; without a mark, the word alone. Any thread.
KES_EXPORT std::string withSign(const std::string& word, Mark mark);

/// The style class that goes with a mark.
KES_EXPORT const char* styleClass(Mark mark);

} // namespace KesMeasure
