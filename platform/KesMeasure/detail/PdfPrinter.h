#pragma once

#include <KesCommon/Result.h>

#include <giomm/cancellable.h>

#include <string>

namespace KesMeasure {

/// Prints an HTML file as PDF with the program WeasyPrint. Any thread.
class PdfPrinter {
public:
    /// Makes the file `pdf`, of which a part may be there after a failure. Blocks for seconds, at most for
    /// two minutes; cancelling ends it as a failure without a text.
    static Kes::Result print(const std::string& html, const std::string& pdf,
                             const Glib::RefPtr<Gio::Cancellable>& cancellable);
};

} // namespace KesMeasure
