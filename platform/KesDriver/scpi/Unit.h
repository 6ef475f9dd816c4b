#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/scpi/Parameter.h>

#include <string>
#include <string_view>
#include <vector>

namespace KesDriver::Scpi {

/// One command or query.
struct Unit {
    /// From the root, in capitals and without the first colon: "SYST:ERR", "*IDN".
    std::string header;
    bool isQuery = false;
    std::vector<Parameter> parameters;
};

/// Splits a message into its units, which begin where the one before ended in the tree of headers. A unit
/// that is wrong leaves the others alone, but for a string or a block that is not closed: it takes the rest
/// of the message with it. The bytes of the message outlive the reader. Not synchronised.
class KES_EXPORT UnitReader {
public:
    explicit UnitReader(std::string_view message) : _rest(message) {}

    /// False at the end; empty units are passed over. Throws `Error` for a unit that is wrong; the next
    /// call reads the one after it.
    bool next(Unit& unit);

private:
    std::string_view _takeUnit();
    void _readHeader(std::string_view text, Unit& unit);

    std::string_view _rest;
    /// "SYST:" after "SYST:ERR?".
    std::string _level;
};

} // namespace KesDriver::Scpi
