#include <KesCommon/XslTransformer.h>

#include <KesCommon/FileSystem.h>
#include <KesCommon/LateLibrary.h>
#include <KesCommon/Log.h>
#include <KesCommon/late/XslTransformation.h>

namespace Kes {

XslTransformer::XslTransformer(const char* xml, const char* xsl, const char* output)
    : _xml(xml ? xml : ""), _xsl(xsl ? xsl : ""), _output(output ? output : "")
{}

void XslTransformer::setParameter(const std::string& name, const std::string& value)
{
    _parameters[name] = value;
}

bool XslTransformer::transform()
{
    const auto apply = findLate<decltype(kesTransformXsl)>(xslLibrary, "kesTransformXsl");
    if (!apply)
        return false;
    std::string output;
    std::string errors;
    const auto place = "XSL transformation of " + _xml + " by " + _xsl;
    if (!apply({_xml, _xsl, _parameters}, output, errors)) {
        KesLog::Log::writeError(place + " failed:\n" + errors);
        return false;
    }
    if (!errors.empty())
        KesLog::Log::writeWarn(place + ":\n" + errors);
    const auto written = writeWholeFile(_output, output);
    if (!written)
        KesLog::Log::writeError(written.getError()->getMessage());
    return written;
}

} // namespace Kes
