#include <KesTreeRelay/detail/RelayText.h>

#include <KesCommon/TextTable.h>

namespace lng::TreeRelay {

namespace {

constexpr Kes::TextTable table({
    {"Error.settingRatio", "the setting current must be at most %s times the nominal current",
     "ток уставки не может превышать номинальный более чем в %s раз"},
    {"Error.noTolerance", "one of the two tolerances must be above zero",
     "один из двух допусков должен быть больше нуля"},
    {"Error.sameInput", "trip and start contact need different inputs",
     "контактам отключения и пуска нужны разные входы"},
    {"Error.withstandOrder", "a current that is withstood for a shorter time must be larger",
     "ток, допустимый в течение меньшего времени, должен быть больше"},
});

} // namespace

const char* get(const std::string& key)
{
    return table.get(key);
}

} // namespace lng::TreeRelay
