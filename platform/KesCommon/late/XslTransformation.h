#pragma once

#include <KesCommon/Export.h>

#include <map>
#include <string>

namespace Kes {

/// What a transformation is made of; see `XslTransformer`.
struct XslTransformation {
    std::string xml;
    std::string xsl;
    std::map<std::string, std::string> parameters;
};

/// The library of `kesTransformXsl`.
inline constexpr const char* xslLibrary = "KesXslt";

/// The output of a transformation and what was reported meanwhile; false without an output. Any thread.
extern "C" KES_EXPORT bool kesTransformXsl(const XslTransformation& transformation, std::string& output,
                                           std::string& errors);

} // namespace Kes
