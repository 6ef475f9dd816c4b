// Any text is read without a crash, and what has been read survives writing and reading once more.

#include <KesProgram/text/Conversion.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

void require(bool condition, const char* what)
{
    if (!condition) {
        std::fprintf(stderr, "ConversionFuzz: %s\n", what);
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(bytes), size);

    const auto values = Kes::splitConvert<float>(text, ';');
    require(values.size() == static_cast<std::size_t>(std::count(text.begin(), text.end(), ';')) + 1,
            "the list has another number of items");

    const Kes::RectangleF untouched{1, 2, 3, 4};
    auto rectangle = untouched;
    const bool isRectangle = Kes::tryConvert<Kes::RectangleF, true, true>(text, rectangle);
    require(isRectangle == (values.size() == 4), "the number of items does not decide");
    require(isRectangle || rectangle == untouched, "a refused text changed the rectangle");
    if (isRectangle) {
        const auto written = Kes::convertToString<Kes::RectangleF, true, true>(rectangle);
        Kes::RectangleF read;
        require(Kes::tryConvert<Kes::RectangleF, true, true>(written, read),
                "a written rectangle is refused");
        require(Kes::convertToString<Kes::RectangleF, true, true>(read) == written, "writing is not stable");
    }

    float number = 42;
    if (Kes::tryConvert<float, true>(text, number))
        require(text.find(';') == std::string::npos, "a list was read as a number");
    else
        require(number == 42, "a refused text changed the number");

    for (unsigned long long position = 0; position <= size; ++position) {
        double special = 42;
        const auto end = Kes::tryExtractSpecialFloating<double>(text, position, special);
        require(end == position ? special == 42
                                : end > position + 2 && end <= size && !std::isfinite(special),
                "a special value has another extent");
    }
    return 0;
}
