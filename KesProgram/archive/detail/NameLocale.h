#pragma once

#include <locale.h>

namespace KesProgram {

/// Fixes for its life time how libarchive understands entry names on this thread, whatever the locale of
/// the process. Internal to archives.
///
/// Also clears `errno`: libarchive ends the process when a name cannot be converted and `errno` stands for an
/// allocation that has failed, even if that was long before and somebody else's.
class NameLocale {
public:
    enum class Encoding {
        Utf8, ///< names are UTF-8; the archive says so to other ZIP readers
        Bytes ///< names are plain bytes, passed on untouched
    };

    explicit NameLocale(Encoding encoding);
    ~NameLocale();
    NameLocale(const NameLocale&) = delete;
    NameLocale& operator=(const NameLocale&) = delete;

private:
    locale_t _previous;
};

} // namespace KesProgram
