#pragma once

#include <KesCommon/Export.h>

#include <map>
#include <string>

namespace Kes {

/// What a transformation is made of; see `XslTransformer`. `xml` and `xsl` are paths of files; the values
/// of `parameters` are plain texts, which need no quotes. A value.
struct XslTransformation {
    std::string xml;
    std::string xsl;
    std::map<std::string, std::string> parameters;
};

/// The library of `kesTransformXsl`.
inline constexpr const char* xslLibrary = "KesXslt";

/// The output of a transformation, in the encoding that the stylesheet asks for, and what was reported
/// meanwhile, at most 4000 bytes; false without an output. Any thread; transformations come one after the
/// other.
extern "C" KES_EXPORT bool kesTransformXsl(const XslTransformation& transformation, std::string& output,
                                           std::string& errors);

} // namespace Kes
