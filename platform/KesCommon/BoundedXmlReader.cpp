#include <KesCommon/BoundedXmlReader.h>

#include <KesCommon/FileStream.h>

#include <libxml/SAX2.h>
#include <libxml/dict.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <algorithm>
#include <utility>

namespace Kes {

namespace {

/// The parser is fed by pieces, so that it never holds more than a piece beyond the limit of one markup: its
/// own work on one tag grows with the square of the number of attributes.
constexpr std::size_t pieceSize = 4096;

constexpr const char* tooLong = "too long";

/// One reading: a parser that makes the tree as ever, with counting put before it.
class Parse {
public:
    Parse(const BoundedXmlReader::Limits& limits, int options, xmlDict* dictionary, std::string_view start,
          const char* path)
        : _limits(limits), _oldFunction(xmlStructuredError), _oldContext(xmlStructuredErrorContext)
    {
        // That of the thread, not that of the parser: errors of encodings only reach this one.
        xmlSetStructuredErrorFunc(this, &_onError);
        xmlSAXHandler handler{};
        xmlSAXVersion(&handler, 2);
        _setHandlers(handler);
        _context =
            xmlCreatePushParserCtxt(&handler, nullptr, start.data(), static_cast<int>(start.size()), path);
        if (!_context)
            return;
        _context->_private = this;
        if (dictionary) {
            xmlDictFree(_context->dict);
            _context->dict = dictionary;
            xmlDictReference(dictionary);
        }
        xmlCtxtUseOptions(_context, options | XML_PARSE_NONET);
    }
    ~Parse()
    {
        if (_context) {
            xmlFreeDoc(_context->myDoc);
            xmlFreeParserCtxt(_context);
        }
        xmlSetStructuredErrorFunc(_oldContext, _oldFunction);
    }
    Parse(const Parse&) = delete;
    Parse& operator=(const Parse&) = delete;

    /// Whether to continue.
    bool feed(std::string_view piece, bool isLast)
    {
        if (!_context ||
            xmlParseChunk(_context, piece.data(), static_cast<int>(piece.size()), isLast ? 1 : 0) != 0 ||
            !_error.empty() || !_context->wellFormed)
            return false;
        const auto waiting = static_cast<std::size_t>(_context->input->end - _context->input->cur);
        if (waiting > _limits.markup)
            _refuse("a tag, comment or instruction is too long");
        return _error.empty();
    }

    /// Null when the text was not even enough for an error.
    BoundedXmlReader::Document takeDocument()
    {
        if (!xmlDocGetRootElement(_context->myDoc))
            return nullptr;
        BoundedXmlReader::Document document(_context->myDoc);
        _context->myDoc = nullptr;
        return document;
    }

    std::string getError() const { return _error.empty() ? "not well-formed" : _error; }

    bool isRefused() const { return _isRefused; }

private:
    static Parse& _of(void* context)
    {
        return *static_cast<Parse*>(static_cast<xmlParserCtxtPtr>(context)->_private);
    }

    static void _setHandlers(xmlSAXHandler& handler)
    {
        handler.startElementNs = &_onStart;
        handler.endElementNs = &_onEnd;
        handler.internalSubset = [](void* context, const xmlChar*, const xmlChar*, const xmlChar*) {
            _of(context)._refuse("a document type");
        };
        handler.comment = [](void* context, const xmlChar* text) {
            if (_of(context)._count(1))
                xmlSAX2Comment(context, text);
        };
        handler.processingInstruction = [](void* context, const xmlChar* target, const xmlChar* data) {
            if (_of(context)._count(1))
                xmlSAX2ProcessingInstruction(context, target, data);
        };
        handler.cdataBlock = [](void* context, const xmlChar* text, int length) {
            if (_of(context)._count(1))
                xmlSAX2CDataBlock(context, text, length);
        };
    }

    static void _onError(void* self, xmlErrorPtr error)
    {
        if (error->level >= XML_ERR_ERROR && error->message)
            static_cast<Parse*>(self)->_fail("line " + std::to_string(error->line) + ": " + error->message);
    }

    static void _onStart(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri,
                         int namespaceCount, const xmlChar** namespaces, int attributeCount,
                         int defaultedCount, const xmlChar** attributes)
    {
        if (_of(context)._enter(static_cast<std::size_t>(namespaceCount),
                                static_cast<std::size_t>(attributeCount)))
            xmlSAX2StartElementNs(context, name, prefix, uri, namespaceCount, namespaces, attributeCount,
                                  defaultedCount, attributes);
    }

    static void _onEnd(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri)
    {
        --_of(context)._depth;
        xmlSAX2EndElementNs(context, name, prefix, uri);
    }

    bool _enter(std::size_t namespaces, std::size_t attributes)
    {
        _namespaces += namespaces;
        if (namespaces + attributes > _limits.attributes)
            _refuse("too many attributes");
        else if (_namespaces > _limits.namespaces)
            _refuse("too many namespaces");
        else if (++_depth > _limits.depth)
            _refuse("too deep");
        return _count(1 + namespaces + attributes);
    }

    /// Whether the nodes may be added.
    bool _count(std::size_t nodes)
    {
        _nodes += nodes;
        if (_nodes > _limits.nodes)
            _refuse("too many nodes");
        return _error.empty();
    }

    void _refuse(const char* reason)
    {
        _isRefused = _isRefused || _error.empty();
        _fail(reason);
        xmlStopParser(_context);
    }

    /// The first failure counts.
    void _fail(std::string reason)
    {
        if (!_error.empty())
            return;
        if (reason.ends_with('\n'))
            reason.pop_back();
        _error = std::move(reason);
    }

    const BoundedXmlReader::Limits& _limits;
    const xmlStructuredErrorFunc _oldFunction;
    void* const _oldContext;
    xmlParserCtxtPtr _context = nullptr;
    std::size_t _nodes = 0;
    std::size_t _depth = 0;
    std::size_t _namespaces = 0;
    std::string _error;
    bool _isRefused = false;
};

} // namespace

void BoundedXmlReader::Deleter::operator()(_xmlDoc* document) const
{
    xmlFreeDoc(document);
}

BoundedXmlReader::Document BoundedXmlReader::read(std::string_view text)
{
    return _read(text, nullptr);
}

BoundedXmlReader::Document BoundedXmlReader::readFile(const std::string& path)
{
    auto stream = openInputFileUTF8Name(path, std::ios::in | std::ios::binary);
    if (!stream.is_open())
        return _fail("cannot open " + path, false);
    const auto text = readAtMost(stream, _limits.bytes);
    return text ? _read(*text, path.c_str()) : _fail(tooLong, true);
}

BoundedXmlReader::Document BoundedXmlReader::_read(std::string_view text, const char* path)
{
    if (text.size() > _limits.bytes)
        return _fail(tooLong, true);
    // The parser looks for the encoding in the bytes that it is made with.
    constexpr std::size_t markSize = 4;
    Parse parse(_limits, _options, _dictionary, text.substr(0, markSize), path);
    text.remove_prefix(std::min(markSize, text.size()));
    bool isGood = true;
    for (; isGood && !text.empty(); text.remove_prefix(std::min(pieceSize, text.size())))
        isGood = parse.feed(text.substr(0, pieceSize), false);
    auto document = isGood && parse.feed({}, true) ? parse.takeDocument() : nullptr;
    if (!document)
        return _fail(parse.getError(), parse.isRefused());
    _error.clear();
    _isRefused = false;
    return document;
}

BoundedXmlReader::Document BoundedXmlReader::_fail(const std::string& error, bool isRefused)
{
    _error = error;
    _isRefused = isRefused;
    return nullptr;
}

} // namespace Kes
