#pragma once

namespace KesMeasure {

/// How a measured value is shown: in words and shapes too, so that nothing depends on colour. A value.
enum class Mark { None, Passed, Failed };

} // namespace KesMeasure
