#pragma once

#include <locale.h>

namespace KesProgram {

/// Fixes for its life time how libarchive understands entry names on this thread, whatever the locale of
/// the process. Internal to archives.
class NameLocale {
public:
    enum class Encoding {
        Utf8, ///< names are UTF-8; other ZIP readers are told so
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
