#include <KesProgram/archive/detail/NameLocale.h>

#include <cerrno>

namespace KesProgram {

namespace {

locale_t findLocale(NameLocale::Encoding encoding)
{
    // Made once and kept: making one reads the locale's files. Null, when the system has no such locale,
    // leaves the thread's locale as it is.
    static const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    static const locale_t bytes = newlocale(LC_CTYPE_MASK, "C", nullptr);
    return encoding == NameLocale::Encoding::Utf8 ? utf8 : bytes;
}

} // namespace

NameLocale::NameLocale(Encoding encoding) : _previous(uselocale(findLocale(encoding)))
{
    errno = 0;
}

NameLocale::~NameLocale()
{
    uselocale(_previous);
}

} // namespace KesProgram
