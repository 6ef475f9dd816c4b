#include <KesCommon/ObjectErrorHelper.h>

namespace Kes::ObjectErrorHelper {

namespace {

void append(std::string& text, const ObjectError::List& errors, const std::string& indent)
{
    for (const auto& error : errors) {
        if (!error)
            continue;
        if (!text.empty())
            text += '\n';
        text += indent;
        for (const char c : error->getMessage()) {
            text += c;
            if (c == '\n')
                text += indent;
        }
        append(text, error->getInner(), indent + "  ");
    }
}

} // namespace

std::string toDisplayString(const ObjectError::List& errors)
{
    std::string text;
    append(text, errors, "");
    return text;
}

} // namespace Kes::ObjectErrorHelper
