#include <KesProgram/model/HelpName.h>

#include <KesCommon/StringHelper.h>

#include <array>

namespace KesProgram {

std::string _getBaseHelpName(const std::string& name)
{
    static const std::array<std::string, 2> suffixes{"Model", "Program"};
    std::string base = name;
    for (const auto& suffix : suffixes)
        if (Kes::StringHelper::endsWith(base, suffix))
            base.resize(base.size() - suffix.size());
    return base;
}

} // namespace KesProgram
