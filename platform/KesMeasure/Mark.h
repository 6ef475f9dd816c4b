#pragma once

namespace KesMeasure {

/// How a measured value is to be shown. In words and shapes too, so that nothing depends on colour.
enum class Mark { None, Passed, Failed };

} // namespace KesMeasure
