#include <KesTreeRelay/detail/RelayText.h>

#include <KesCommon/TextTable.h>

namespace lng::TreeRelay {

namespace {

constexpr lng::Text texts[] = {
    {"Error.settingRatio", "the setting current must be at most %s times the nominal current",
     "ток уставки не может превышать номинальный более чем в %s раз"},
    {"Error.noTolerance", "one of the two tolerances must be above zero",
     "один из двух допусков должен быть больше нуля"},
    {"Error.sameInput", "trip and start contact need different inputs",
     "контактам отключения и пуска нужны разные входы"},
    {"Error.withstandOrder", "a current that is withstood for a shorter time must be larger",
     "ток, допустимый в течение меньшего времени, должен быть больше"},
    {"Error.noStage", "at least one stage must be in use", "хотя бы одна ступень должна быть введена"},
    {"Error.tablePairs", "between 2 and %zu pairs are needed, such as “2:10; 5:3.5”",
     "нужно от 2 до %zu пар, например «2:10; 5:3,5»"},
    {"Error.tablePair", "“%s” is not a pair of a multiple of Is and seconds, such as “2:10”",
     "«%s» — не пара из кратности Iуст и секунд, например «2:10»"},
    {"Error.tableMultiple", "“%s”: the multiple must lie between 1 and 100",
     "«%s»: кратность должна лежать между 1 и 100"},
    {"Error.tableSeconds", "“%s”: the time must lie between 0.001 and 3600 s",
     "«%s»: время должно лежать между 0,001 и 3600 с"},
    {"Error.tableRising", "“%s”: its multiple must be larger than that of the pair before",
     "«%s»: кратность должна быть больше, чем в предыдущей паре"},
    {"Error.tableFalling", "“%s”: its time must not be longer than that of the pair before",
     "«%s»: время не должно быть больше, чем в предыдущей паре"},
};

constexpr Kes::TextTable table("TreeRelay", texts);

} // namespace

const char* get(const std::string& key)
{
    return table.get(key);
}

} // namespace lng::TreeRelay
