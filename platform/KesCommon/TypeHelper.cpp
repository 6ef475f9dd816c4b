#include <KesCommon/TypeHelper.h>

#include <cstddef>
#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#include <string_view>
#include <vector>

namespace Kes::TypeHelper {

namespace {

std::string demangle(const char* name)
{
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> text(
        abi::__cxa_demangle(name, nullptr, nullptr, &status), &std::free);
    return status == 0 ? text.get() : name;
}

/// Copies the name, and at each "::" takes back what has been copied of the qualifier. Brackets nest: a
/// qualifier reaches back to its beginning over whole template and function arguments.
std::string dropQualifiers(std::string_view name)
{
    std::string result;
    std::vector<std::size_t> begins{0};
    for (std::size_t i = 0; i < name.size(); ++i) {
        const auto rest = name.substr(i);
        if (rest.starts_with("::") || rest.starts_with(" const::")) {
            i += rest.find("::") + 1;
            result.resize(begins.back());
            continue;
        }
        const char c = name[i];
        result += c;
        if (c == '<' || c == '(' || c == '{' || c == '[')
            begins.push_back(result.size());
        else if ((c == '>' || c == ')' || c == '}' || c == ']') && begins.size() > 1)
            begins.pop_back();
        else if (c == ' ' || c == ',' || c == '*' || c == '&')
            begins.back() = result.size();
    }
    return result;
}

} // namespace

std::string getShortTypeName(const std::type_info& type)
{
    return dropQualifiers(demangle(type.name()));
}

} // namespace Kes::TypeHelper
