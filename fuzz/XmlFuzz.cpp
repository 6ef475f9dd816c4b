// Any bytes end in a tree within the limits and without a document type, or in an error; a tree reads the
// same after writing it.

#include "Require.h"

#include <KesCommon/BoundedXmlReader.h>

#include <libxml/tree.h>

#include <algorithm>
#include <cstdint>
#include <string>

namespace {

using Limits = Kes::BoundedXmlReader::Limits;

struct Size {
    std::size_t elements = 0;
    std::size_t attributes = 0;
    std::size_t depth = 0;
};

void measure(const xmlNode* node, std::size_t depth, Size& size)
{
    for (; node; node = node->next) {
        if (node->type != XML_ELEMENT_NODE)
            continue;
        ++size.elements;
        size.depth = std::max(size.depth, depth);
        std::size_t attributes = 0;
        for (const auto* attribute = node->properties; attribute; attribute = attribute->next)
            ++attributes;
        size.attributes = std::max(size.attributes, attributes);
        measure(node->children, depth + 1, size);
    }
}

std::string write(xmlDoc* document)
{
    xmlChar* bytes = nullptr;
    int length = 0;
    xmlDocDumpMemoryEnc(document, &bytes, &length, "UTF-8");
    const std::string text(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
    xmlFree(bytes);
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    Limits limits;
    limits.bytes = 20000;
    limits.markup = 1000;
    limits.depth = 8;
    limits.attributes = 6;
    limits.namespaces = 4;
    limits.nodes = 200;
    Kes::BoundedXmlReader reader(limits);
    const auto document = reader.read({reinterpret_cast<const char*>(bytes), size});
    require(document ? reader.getError().empty() : !reader.getError().empty(), "there is a tree or an error");
    if (!document)
        return 0;
    require(!document->intSubset && !document->extSubset, "a tree has no document type");
    Size found;
    measure(document->children, 1, found);
    require(found.elements >= 1 && found.elements <= limits.nodes && found.depth <= limits.depth &&
                found.attributes <= limits.attributes,
            "the tree keeps to the limits");
    const std::string written = write(document.get());
    const auto again = Kes::BoundedXmlReader().read(written);
    require(again && write(again.get()) == written, "the tree stays the same by writing and reading");
    return 0;
}
