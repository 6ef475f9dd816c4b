// Linked into a test program, adds a language whose table has every text of the sources, in letters that no other
// text has: whatever shows other letters has come past the tables.

#include <KesCommon/Language.h>

namespace {

constexpr lng::TranslatedText texts[] = {
#include "ArtificialLanguage.inc"
};

const auto artificial = lng::addLanguage({"zz", "zz-ZZ", ',', texts});

} // namespace
