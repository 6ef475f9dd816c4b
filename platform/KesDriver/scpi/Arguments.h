#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/scpi/Parameter.h>

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace KesDriver::Scpi {

/// What a number may be given in; read in amperes, volts, hertz, seconds, degrees, ohms.
enum class Quantity { None, Current, Voltage, Frequency, Time, Angle, Resistance };

/// Reads the parameters of a unit one after the other, each as what it has to be. Everything throws `Error`
/// for a parameter that is missing or is something else. Not synchronised.
class KES_EXPORT Arguments {
public:
    explicit Arguments(std::vector<Parameter> parameters) : _parameters(std::move(parameters)) {}

    bool hasMore() const { return _next < _parameters.size(); }
    /// The next one is a word, one of ON and OFF included.
    bool isWordNext() const;

    double readNumber(Quantity quantity = Quantity::None);
    /// A whole number in the range, which lies within plus and minus 2 to the power of 53.
    long long readInteger(long long least, long long most);
    /// ON, OFF, 1 or 0.
    bool readBoolean();
    std::string readText();
    /// In capitals.
    std::string readWord();
    /// A word in capitals, or a number as it is written, such as "1C".
    std::string readToken();
    /// Which of the words it is; each is written as in `Mnemonic`.
    std::size_t readChoice(std::initializer_list<std::string_view> words);
    /// The numbers of a channel list, each within 1 to `most`.
    std::vector<unsigned> readChannels(unsigned most);
    std::string readBlock();

    /// Nothing more is expected.
    void end() const;

private:
    Parameter _take(Parameter::Kind kind);

    std::vector<Parameter> _parameters;
    std::size_t _next = 0;
};

} // namespace KesDriver::Scpi
