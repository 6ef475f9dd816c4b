#pragma once

#include <KesCommon/Export.h>

#include <map>
#include <string>

namespace Kes {

/// One XSLT 1.0 transformation from an XML file and a stylesheet file to an output file.
///
/// The stylesheet may use the EXSLT functions for nodes, sets, numbers and strings and may read local files;
/// it reaches no network and writes and creates nothing but the output. The XML file, and those that the
/// stylesheet takes data from, are read within the limits of `BoundedXmlReader`. Entities are not replaced in
/// the stylesheet. Any thread; transformations run one at a time.
class KES_EXPORT XslTransformer {
public:
    /// Paths of the three files; none is touched before `transform`.
    XslTransformer(const char* xml, const char* xsl, const char* output);

    /// Sets a stylesheet parameter. The value is a text, taken literally, quotes included.
    void setParameter(const std::string& name, const std::string& value);

    /// Writes the output. The file appears whole or not at all: after a failure, which is written to the
    /// log, an output file that was there before still is there, unchanged.
    bool transform();

private:
    std::string _xml;
    std::string _xsl;
    std::string _output;
    std::map<std::string, std::string> _parameters;
};

} // namespace Kes
