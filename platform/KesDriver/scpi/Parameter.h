#pragma once

#include <KesCommon/Export.h>

#include <string>
#include <string_view>

namespace KesDriver::Scpi {

/// One parameter of a unit, as it is written. A value.
struct KES_EXPORT Parameter {
    enum class Kind { Number, Word, Text, Block, List };

    /// Reads a parameter without blanks in front. Throws `Error`.
    static Parameter parse(std::string_view text);

    Kind kind = Kind::Word;
    /// Number: as written. Word: in capitals. Text and Block: what is inside. List: what stands between "(@"
    /// and ")".
    std::string text;
    /// Of a number, in its unit.
    double value = 0.0;
    /// Of a number, in capitals; empty for none.
    std::string unit;
};

} // namespace KesDriver::Scpi
