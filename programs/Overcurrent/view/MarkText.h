#pragma once

#include <Overcurrent/data/ResultRow.h>

#include <string>

namespace Overcurrent {

/// A verdict's word with a sign before it that differs in shape; without a mark, the word alone. Any thread.
std::string withSign(const std::string& word, Mark mark);

/// The style class that goes with a mark.
const char* styleClass(Mark mark);

} // namespace Overcurrent
