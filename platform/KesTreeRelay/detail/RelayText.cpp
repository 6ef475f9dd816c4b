#include <KesTreeRelay/detail/RelayText.h>

#include <KesCommon/TextTable.h>

namespace lng::TreeRelay {

namespace {

constexpr Kes::TextTable table({
    {"Error.settingRatio", "the setting current must be at most %s times the nominal current",
     "ток уставки не может превышать номинальный более чем в %s раз"},
    {"Error.noTolerance", "one of the two tolerances must be above zero",
     "один из двух допусков должен быть больше нуля"},
});

} // namespace

const char* get(const std::string& key)
{
    return table.get(key);
}

} // namespace lng::TreeRelay
