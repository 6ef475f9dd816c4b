#include <KesCommon/OptionParsing.h>

#include <KesCommon/CommonText.h>
#include <KesCommon/StringHelper.h>

#include <glibmm/exception.h>
#include <glibmm/optioncontext.h>

#include <algorithm>
#include <string_view>

namespace Kes {

namespace {

/// The first argument that is an option; null when there is none.
const char* findOption(int argc, char** argv)
{
    const auto* const found = std::find_if(argv + std::min(argc, 1), argv + argc, [](const char* argument) {
        return std::string_view(argument).starts_with("-");
    });
    return found == argv + argc || std::string_view(*found) == "--" ? nullptr : *found;
}

} // namespace

std::string parseOptions(Glib::OptionContext& context, int& argc, char**& argv)
{
    // Read before the parser begins: GLib does not say what it leaves of the arguments when it fails.
    const std::string last = argc > 0 ? argv[argc - 1] : "";
    context.set_ignore_unknown_options(true);
    try {
        context.parse(argc, argv);
    } catch (const Glib::OptionError&) {
        // Every value is read as a text, and every text is accepted, so a value can only be missing. Then its
        // option is the last argument.
        return StringHelper::format(lng::Common::get("option.NoValue"), last);
    } catch (const Glib::Exception&) {
        return lng::Common::get("option.NoText");
    }
    const char* const option = findOption(argc, argv);
    return option ? StringHelper::format(lng::Common::get("option.Unknown"), option) : std::string();
}

} // namespace Kes
