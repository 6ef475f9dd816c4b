#include <KesProgram/shell/CommandLine.h>

#include <KesCommon/Language.h>
#include <KesCommon/NumberText.h>
#include <KesCommon/OptionParsing.h>
#include <KesCommon/StringHelper.h>
#include <KesCommon/Text.h>

#include <glib.h>
#include <glibmm/optioncontext.h>
#include <glibmm/optionentry.h>
#include <glibmm/optiongroup.h>

#include <algorithm>
#include <clocale>
#include <cstring>
#include <optional>
#include <sstream>
#include <vector>

namespace KesProgram {

namespace {

using lng::Text;

/// As far as a simulated device goes along.
constexpr double minimumSpeed = 1e-3;
constexpr double maximumSpeed = 1e5;

/// The last of the paths; empty when there is none.
std::string absolute(const std::vector<std::string>& paths)
{
    if (paths.empty())
        return {};
    char* found = g_canonicalize_filename(paths.back().c_str(), nullptr);
    const std::string result = found;
    g_free(found);
    return result;
}

/// The texts of the options depend on it, so it is looked up before they are parsed. The last one counts.
std::string findLanguage(int argc, char** argv)
{
    static constexpr const char* name = "--language";
    std::string found;
    for (int i = 1; i < argc && std::strcmp(argv[i], "--") != 0; ++i) {
        const std::string argument = argv[i];
        if (argument == name && i + 1 < argc)
            found = argv[i + 1];
        else if (argument.rfind(std::string(name) + "=", 0) == 0)
            found = argument.substr(std::strlen(name) + 1);
    }
    return found;
}

/// As in "en, ru".
std::string knownLanguages()
{
    std::string text;
    for (const auto& code : lng::languageCodes())
        text += (text.empty() ? "" : ", ") + code;
    return text;
}

/// As in "0.001 to 100000".
std::string speedRange()
{
    static constexpr Text range{"CommandLine.speedRange", "%s to %s", "%s до %s"};
    return Kes::StringHelper::format(range.get(), Kes::NumberText::show(minimumSpeed),
                                     Kes::NumberText::show(maximumSpeed));
}

bool useLanguage(const std::string& name)
{
    lng::useLanguageOfUser();
    const auto found = lng::findLanguage(name);
    lng::language = found.value_or(lng::language);
    return name.empty() || found;
}

template <typename... Parts>
std::string refuse(const Text& text, const Parts&... parts)
{
    return Kes::StringHelper::format(text.get(), parts...);
}

/// The options as GLib's parser fills them.
class Options : public Glib::OptionGroup {
public:
    explicit Options(const CommandLine::Abilities& abilities) : Glib::OptionGroup("program", "")
    {
        static constexpr Text file{"CommandLine.file", "FILE", "ФАЙЛ"};
        static constexpr Text number{"CommandLine.number", "N", "N"};
        _add("language",
             {"CommandLine.language", "Language of the program: a code from the list %s",
              "Язык программы: код из списка %s"},
             {"CommandLine.code", "CODE", "КОД"}, language, knownLanguages());
        _add("run",
             {"CommandLine.run", "Start the test once the window is open",
              "Начать проверку, когда окно открыто"},
             run);
        _addFile("save", {"CommandLine.save", "Save the archive", "Сохранить архив"}, file, save,
                 abilities.hasArchive);
        _addFile("report",
                 {"CommandLine.report",
                  "Write the report; test programs make PDF of a name that ends in .pdf",
                  "Записать протокол; если имя оканчивается на .pdf, программы проверки создают PDF"},
                 file, report, abilities.hasReport);
        _addFile("results",
                 {"CommandLine.results",
                  "Write the results as a table (.csv), as data (.json) or as test cases (.xml, JUnit)",
                  "Записать результаты таблицей (.csv), данными (.json) или отчётом о тестах (.xml, JUnit)"},
                 file, results, abilities.hasResults);
        _addFile(
            "screenshot",
            {"CommandLine.screenshot", "Write a picture (PNG) of the window", "Записать снимок окна (PNG)"},
            file, screenshot, true);
        _add("speed",
             {"CommandLine.speed", "Speed factor of the simulated bench, from %s",
              "Ускорение имитируемого стенда, от %s"},
             number, speed, speedRange());
        _add("devices",
             {"CommandLine.devices", "Test with the devices at these addresses, whatever is set up",
              "Работать с устройствами по этим адресам независимо от настройки"},
             {"CommandLine.addresses", "ADDRESS,…", "АДРЕС,…"}, devices);
        _add("quit",
             {"CommandLine.quit", "Close the program when everything is done",
              "Закрыть программу, когда всё сделано"},
             quit);
        _add("version",
             {"CommandLine.version", "Show the version of the program", "Показать версию программы"},
             version);
        Glib::OptionEntry rest;
        rest.set_long_name(G_OPTION_REMAINING);
        if (abilities.hasArchive)
            rest.set_arg_description(std::string("[") + file.get() + "]");
        add_entry_filename(rest, files);
    }

    Glib::ustring language;
    Glib::ustring speed;
    Glib::ustring devices;
    /// The last one counts.
    std::vector<std::string> save;
    std::vector<std::string> report;
    std::vector<std::string> results;
    std::vector<std::string> screenshot;
    std::vector<std::string> files;
    bool run = false;
    bool quit = false;
    bool version = false;

private:
    /// `part` stands in the place of "%s" in the description.
    static Glib::OptionEntry _entry(const char* name, const Text& description, const char* argument,
                                    const std::string& part = {})
    {
        Glib::OptionEntry entry;
        entry.set_long_name(name);
        entry.set_description(Kes::StringHelper::format(description.get(), part));
        if (argument)
            entry.set_arg_description(argument);
        return entry;
    }
    void _add(const char* name, const Text& description, bool& value)
    {
        add_entry(_entry(name, description, nullptr), value);
    }
    void _add(const char* name, const Text& description, const Text& argument, Glib::ustring& value,
              const std::string& part = {})
    {
        add_entry(_entry(name, description, argument.get(), part), value);
    }
    void _addFile(const char* name, const Text& description, const Text& argument,
                  std::vector<std::string>& value, bool isOffered)
    {
        auto entry = _entry(name, description, argument.get());
        if (!isOffered)
            entry.set_flags(Glib::OptionEntry::FLAG_HIDDEN);
        add_entry_filename(entry, value);
    }
};

/// The part that is no address, one that comes twice, or one too many; nothing when all is well.
std::optional<std::string> readDevices(const std::string& text, std::vector<KesDriver::NetAddress>& devices)
{
    std::istringstream parts(text);
    for (std::string part; std::getline(parts, part, ',');) {
        const auto address = KesDriver::NetAddress::parse(part);
        if (!address || devices.size() == CommandLine::mostDevices ||
            std::find(devices.begin(), devices.end(), *address) != devices.end())
            return part;
        devices.push_back(*address);
    }
    return std::nullopt;
}

/// Why the files to open cannot be; empty when they can.
std::string checkOpened(const std::vector<std::string>& files)
{
    if (files.size() > 1)
        return refuse({"CommandLine.oneFile", "Only one file can be opened; “%s” is one too many.",
                       "Можно открыть только один файл; «%s» — лишний."},
                      files[1]);
    if (!files.empty() && files.front().empty())
        return refuse({"CommandLine.emptyFile", "The name of the file to open is empty.",
                       "Имя открываемого файла пусто."});
    return {};
}

/// Why the values of the option are no files to write; empty when they are.
std::string checkWritten(const char* name, const std::vector<std::string>& paths)
{
    for (const auto& path : paths) {
        if (path.empty())
            return refuse(
                {"CommandLine.emptyName", "%s needs the name of a file.", "Для %s нужно имя файла."}, name);
        // Its own value has been forgotten.
        if (path.front() == '-')
            return refuse(
                {"CommandLine.optionName",
                 "%s needs the name of a file; “%s” looks like an option. A file of that name: “./%s”.",
                 "Для %s нужно имя файла, а «%s» похоже на параметр. Файл с таким именем: «./%s»."},
                name, path, path);
    }
    return {};
}

std::variant<CommandLine, std::string> convert(const Options& options)
{
    CommandLine line;
    for (const auto& refusal :
         {checkOpened(options.files), checkWritten("--save", options.save),
          checkWritten("--report", options.report), checkWritten("--results", options.results),
          checkWritten("--screenshot", options.screenshot)})
        if (!refusal.empty())
            return refusal;
    if (!options.speed.empty()) {
        const auto speed = Kes::NumberText::read(options.speed.raw());
        if (!speed || !(*speed >= minimumSpeed && *speed <= maximumSpeed))
            return refuse({"CommandLine.badSpeed", "--speed: “%s” is not a number from %s.",
                           "--speed: «%s» — не число от %s."},
                          options.speed.raw(), speedRange());
        line.speed = *speed;
    }
    if (const auto wrong = readDevices(options.devices.raw(), line.devices))
        return refuse({"CommandLine.badDevice",
                       "--devices: “%s” is not the address of a device, is given twice, or is one too many.",
                       "--devices: «%s» — не адрес устройства, указан дважды или лишний."},
                      *wrong);
    line.file = absolute(options.files);
    line.run = options.run;
    line.save = absolute(options.save);
    line.report = absolute(options.report);
    line.results = absolute(options.results);
    line.screenshot = absolute(options.screenshot);
    line.quit = options.quit;
    line.version = options.version;
    return line;
}

} // namespace

bool CommandLine::isUnattended() const
{
    return run || quit || !save.empty() || !report.empty() || !results.empty() || !screenshot.empty();
}

std::variant<CommandLine, std::string> CommandLine::parse(int argc, char** argv,
                                                          const std::function<std::string()>& summary)
{
    return parse(argc, argv, summary, Abilities());
}

std::variant<CommandLine, std::string> CommandLine::parse(int argc, char** argv,
                                                          const std::function<std::string()>& summary,
                                                          const Abilities& abilities)
{
    // Texts go to the terminal in the user's encoding; one that knows no letters but the English ones would
    // show none of the others.
    std::setlocale(LC_ALL, "");
    if (!g_get_charset(nullptr) && MB_CUR_MAX == 1 &&
        std::strcmp(std::setlocale(LC_CTYPE, nullptr), "C") == 0)
        std::setlocale(LC_CTYPE, "C.UTF-8");
    const std::string language = findLanguage(argc, argv);
    if (!useLanguage(language))
        return refuse({"CommandLine.badLanguage", "--language: “%s” is unknown. Choose from: %s.",
                       "--language: «%s» неизвестен. Выберите из списка: %s."},
                      language, knownLanguages());
    Options options(abilities);
    Glib::OptionContext context("");
    context.set_summary(summary());
    context.set_main_group(options);
    auto refusal = Kes::parseOptions(context, argc, argv);
    if (!refusal.empty())
        return refusal;
    return convert(options);
}

} // namespace KesProgram
