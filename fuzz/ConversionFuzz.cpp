// Any text is read without a crash, and what has been read survives writing and reading once more.

#include "Require.h"

#include <KesProgram/text/Conversion.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(bytes), size);

    const auto values = Kes::splitConvert<float>(text, ';');
    require(values.size() == static_cast<std::size_t>(std::count(text.begin(), text.end(), ';')) + 1,
            "the list has one item more than separators");

    const Kes::RectangleF untouched{1, 2, 3, 4};
    auto rectangle = untouched;
    const bool isRectangle = Kes::tryConvert<Kes::RectangleF, true, true>(text, rectangle);
    require(isRectangle == (values.size() == 4), "the number of items decides");
    require(isRectangle || rectangle == untouched, "a refused text leaves the rectangle");
    if (isRectangle) {
        const auto written = Kes::convertToString<Kes::RectangleF, true, true>(rectangle);
        Kes::RectangleF read;
        require(Kes::tryConvert<Kes::RectangleF, true, true>(written, read), "a written rectangle is read");
        require(Kes::convertToString<Kes::RectangleF, true, true>(read) == written, "writing is stable");
    }

    float number = 42;
    if (Kes::tryConvert<float, true>(text, number))
        require(text.find(';') == std::string::npos, "a list is no number");
    else
        require(number == 42, "a refused text leaves the number");

    for (unsigned long long position = 0; position <= size; ++position) {
        double special = 42;
        const auto end = Kes::tryExtractSpecialFloating<double>(text, position, special);
        require(end == position ? special == 42
                                : end > position + 2 && end <= size && !std::isfinite(special),
                "a special value ends behind its last letter");
    }
    return 0;
}
