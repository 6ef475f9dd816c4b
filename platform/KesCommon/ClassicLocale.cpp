#include <KesCommon/ClassicLocale.h>

namespace Kes {

namespace {

locale_t classic()
{
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

} // namespace

ClassicLocale::ClassicLocale() : _previous(uselocale(classic())) {}

ClassicLocale::~ClassicLocale()
{
    uselocale(_previous);
}

} // namespace Kes
