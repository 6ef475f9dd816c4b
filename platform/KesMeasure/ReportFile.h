#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>

#include <string>

namespace KesMeasure {

/// Makes an HTML report from its data and a stylesheet, with a folder for temporary files that is gone
/// afterwards. Any thread.
class KES_EXPORT ReportFile {
public:
    /// Writes the report; the file appears whole or not at all. The stylesheet is one of the data
    /// directory's, such as "report/overcurrent.xsl". The failure's text can be shown to the user.
    static Kes::Result write(const std::string& path, const std::string& data, const std::string& stylesheet);
};

} // namespace KesMeasure
