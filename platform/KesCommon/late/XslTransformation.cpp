#include <KesCommon/late/XslTransformation.h>

#include <KesCommon/BoundedXmlReader.h>
#include <KesCommon/ClassicLocale.h>
#include <KesCommon/FileSystem.h>

#include <glib.h>
#include <libexslt/exslt.h>
#include <libxml/parser.h>
#include <libxml/xmlerror.h>
#include <libxslt/documents.h>
#include <libxslt/imports.h>
#include <libxslt/security.h>
#include <libxslt/transform.h>
#include <libxslt/variables.h>
#include <libxslt/xsltInternals.h>
#include <libxslt/xsltutils.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string_view>

namespace Kes {

namespace {

template <auto Free>
struct Freer {
    template <typename T>
    void operator()(T* object) const
    {
        Free(object);
    }
};

using Document = std::unique_ptr<xmlDoc, Freer<&xmlFreeDoc>>;
using Stylesheet = std::unique_ptr<xsltStylesheet, Freer<&xsltFreeStylesheet>>;
using Context = std::unique_ptr<xsltTransformContext, Freer<&xsltFreeTransformContext>>;
using Parser = std::unique_ptr<xmlParserCtxt, Freer<&xmlFreeParserCtxt>>;

constexpr int parserOptions = XML_PARSE_NONET | XML_PARSE_NOCDATA;

/// Gathers what the two C libraries report. libxslt has one process-wide error function, so this lives
/// under the mutex of all transformations; libxml2's is the thread's own, shared with whatever else parses.
class ErrorText {
public:
    ErrorText() : _oldFunction(xmlStructuredError), _oldContext(xmlStructuredErrorContext)
    {
        xmlSetStructuredErrorFunc(this, &_onXmlError);
        xsltSetGenericErrorFunc(this, &_onXsltError);
    }
    ~ErrorText()
    {
        xsltSetGenericErrorFunc(nullptr, nullptr);
        xmlSetStructuredErrorFunc(_oldContext, _oldFunction);
    }
    ErrorText(const ErrorText&) = delete;
    ErrorText& operator=(const ErrorText&) = delete;

    const std::string& get() const { return _text; }

private:
    /// A faulty stylesheet may report the same at every node.
    static constexpr std::size_t _longest = 4000;

    void _append(std::string_view text)
    {
        _text += text.substr(0, _longest - std::min(_longest, _text.size()));
    }

    static void _onXmlError(void* self, xmlErrorPtr error)
    {
        std::string place;
        if (error->file)
            place = std::string(error->file) + ":" + std::to_string(error->line) + ": ";
        std::string message = error->message ? error->message : "unknown error";
        if (!message.ends_with('\n'))
            message += '\n';
        static_cast<ErrorText*>(self)->_append(place + message);
    }

    static void _onXsltError(void* self, const char* format, ...) __attribute__((format(printf, 2, 3)))
    {
        char text[1024];
        std::va_list arguments;
        va_start(arguments, format);
        std::vsnprintf(text, sizeof text, format, arguments);
        va_end(arguments);
        static_cast<ErrorText*>(self)->_append(text);
    }

    const xmlStructuredErrorFunc _oldFunction;
    void* const _oldContext;
    std::string _text;
};

/// A document that is data and may be anybody's.
Document loadData(const std::string& path, xmlDictPtr dictionary)
{
    BoundedXmlReader reader;
    reader.setOptions(parserOptions);
    reader.setDictionary(dictionary);
    auto document = reader.readFile(path);
    if (!document)
        xsltGenericError(xsltGenericErrorContext, "%s: %s\n", path.c_str(), reader.getError().c_str());
    return Document(document.release());
}

/// The path that the XML library has made a reference of, with escapes as in a URI.
std::string toPath(const xmlChar* reference)
{
    const std::string path = reinterpret_cast<const char*>(reference);
    if (fileExist(path))
        return path;
    const std::unique_ptr<char, Freer<&g_free>> unescaped(g_uri_unescape_string(path.c_str(), nullptr));
    return unescaped ? unescaped.get() : path;
}

/// Loads every file of a transformation but the first: libxslt's own loader replaces entities in stylesheets.
/// All share the dictionary of the transformation, by whose pointers libxslt compares names.
xmlDocPtr load(const xmlChar* path, xmlDictPtr dictionary, int, void*, xsltLoadType type)
{
    if (type == XSLT_LOAD_DOCUMENT)
        return loadData(toPath(path), dictionary).release();
    const Parser parser(xmlNewParserCtxt());
    if (!parser)
        return nullptr;
    if (dictionary) {
        xmlDictFree(parser->dict);
        parser->dict = dictionary;
        xmlDictReference(dictionary);
    }
    return xmlCtxtReadFile(parser.get(), reinterpret_cast<const char*>(path), nullptr, parserOptions);
}

xsltSecurityPrefsPtr makeSecurity()
{
    const auto security = xsltNewSecurityPrefs();
    for (const auto option : {XSLT_SECPREF_WRITE_FILE, XSLT_SECPREF_CREATE_DIRECTORY,
                              XSLT_SECPREF_READ_NETWORK, XSLT_SECPREF_WRITE_NETWORK})
        xsltSetSecurityPrefs(security, option, &xsltSecurityForbid);
    return security;
}

void initialize()
{
    static const bool done = [] {
        xmlInitParser();
        exsltCommonRegister();
        exsltMathRegister();
        exsltSetsRegister();
        exsltStrRegister();
        exsltFuncRegister();
        xsltSetLoaderFunc(&load);
        xsltSetDefaultSecurityPrefs(makeSecurity());
        return true;
    }();
    (void)done;
}

Stylesheet parseStylesheet(const std::string& path)
{
    Document document(
        load(reinterpret_cast<const xmlChar*>(path.c_str()), nullptr, 0, nullptr, XSLT_LOAD_START));
    Stylesheet stylesheet(document ? xsltParseStylesheetDoc(document.get()) : nullptr);
    if (!stylesheet)
        return nullptr;
    // Only a stylesheet that has come about owns its document.
    document.release();
    return stylesheet->errors == 0 ? std::move(stylesheet) : nullptr;
}

bool run(xsltStylesheet& stylesheet, xmlDoc& source, const std::map<std::string, std::string>& parameters,
         std::string& output)
{
    const auto text = [](const std::string& value) {
        return reinterpret_cast<const xmlChar*>(value.c_str());
    };
    const Context context(xsltNewTransformContext(&stylesheet, &source));
    if (!context)
        return false;
    xsltSetCtxtParseOptions(context.get(), parserOptions);
    for (const auto& [name, value] : parameters)
        if (xsltQuoteOneUserParam(context.get(), text(name), text(value)) != 0)
            return false;
    const Document result(
        xsltApplyStylesheetUser(&stylesheet, &source, nullptr, nullptr, nullptr, context.get()));
    if (!result || context->state != XSLT_STATE_OK)
        return false;
    xmlChar* bytes = nullptr;
    int length = 0;
    if (xsltSaveResultToString(&bytes, &length, result.get(), &stylesheet) < 0)
        return false;
    if (bytes)
        output.assign(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
    xmlFree(bytes);
    return true;
}

} // namespace

bool kesTransformXsl(const XslTransformation& transformation, std::string& output, std::string& errors)
{
    static std::mutex mutex;
    std::lock_guard lock(mutex);
    // libxslt writes fractions with the locale's decimal point.
    const ClassicLocale locale;
    initialize();
    const ErrorText errorText;
    const auto source = loadData(transformation.xml, nullptr);
    const auto stylesheet = source ? parseStylesheet(transformation.xsl) : nullptr;
    const bool success = stylesheet && run(*stylesheet, *source, transformation.parameters, output);
    errors = errorText.get();
    return success;
}

} // namespace Kes
