#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>

#include <giomm/cancellable.h>

#include <string>

namespace KesMeasure {

/// Makes a report from its data and a stylesheet, with a folder for temporary files that is gone afterwards.
/// Any thread.
class KES_EXPORT ReportFile {
public:
    /// What stands at the foot of each printed page.
    struct Foot {
        /// The name of the file that holds the data; empty: that of the report.
        std::string file;
        /// Name and version of the program.
        std::string program;
    };

    /// Writes the report; the file appears whole or not at all. A path that ends in ".pdf" gives PDF, any
    /// other one HTML. The stylesheet is one of the data directory's, such as "report/test.xsl"; it
    /// gets the foot as the parameters "file" and "program". The failure's text can be shown to the user.
    /// PDF takes seconds and can be cancelled, which is a failure without a text.
    static Kes::Result write(const std::string& path, const std::string& data, const std::string& stylesheet,
                             const Foot& foot, const Glib::RefPtr<Gio::Cancellable>& cancellable = {});
    static Kes::Result write(const std::string& path, const std::string& data, const std::string& stylesheet)
    {
        return write(path, data, stylesheet, {});
    }

    /// Whether a report at this path is PDF.
    static bool isPdf(const std::string& path);
};

} // namespace KesMeasure
