#include <Simulator/SimulatorOptions.h>

#include <Simulator/SimulatorText.h>

#include <KesCommon/Language.h>
#include <KesCommon/NumberText.h>
#include <KesCommon/OptionParsing.h>
#include <KesCommon/StringHelper.h>

#include <glibmm/optioncontext.h>
#include <glibmm/optionentry.h>
#include <glibmm/optiongroup.h>

#include <algorithm>
#include <clocale>
#include <limits>
#include <stdexcept>

namespace Simulator {

namespace {

constexpr double minimumSpeed = 1e-3;
constexpr double maximumSpeed = 1e5;

/// The options as GLib's parser fills them.
class Texts : public Glib::OptionGroup {
public:
    Texts() : Glib::OptionGroup("simulator", "")
    {
        _add("listen", "listen.value", listen);
        _add("devices", "number.value", devices);
        _add("type", "number.value", type);
        _add("serial", "number.value", serial);
        _add("speed", "number.value", speed);
        _add("wire", "wire.value", wire);
        _add("announce", announce);
        _add("log", log);
        _add("version", version);
    }

    Glib::ustring listen;
    Glib::ustring devices;
    Glib::ustring type;
    Glib::ustring serial;
    Glib::ustring speed;
    Glib::ustring wire;
    bool announce = false;
    bool log = false;
    bool version = false;

private:
    static Glib::OptionEntry _entry(const char* name)
    {
        Glib::OptionEntry entry;
        entry.set_long_name(name);
        entry.set_description(lng::Simulator::get(name));
        return entry;
    }
    void _add(const char* name, bool& value) { add_entry(_entry(name), value); }
    void _add(const char* name, const char* argument, Glib::ustring& value)
    {
        auto entry = _entry(name);
        entry.set_arg_description(lng::Simulator::get(argument));
        add_entry(entry, value);
    }
};

/// An option has a value that is not possible.
class Refused : public std::runtime_error {
public:
    Refused(const char* name, const std::string& value)
        : std::runtime_error(Kes::StringHelper::format(lng::Simulator::get("error.value"), name, value))
    {}
    /// The least and the most that is possible.
    Refused(const char* name, const std::string& value, double least, double most)
        : std::runtime_error(Kes::StringHelper::format(lng::Simulator::get("error.range"), name, value,
                                                       Kes::NumberText::show(least),
                                                       Kes::NumberText::show(most)))
    {}
};

/// `value` stays as it is when the option is not given.
template <typename Number>
void readNumber(const char* name, const Glib::ustring& text, Number least, Number most, Number& value)
{
    if (text.empty())
        return;
    const auto read = Kes::NumberText::readInteger(text.raw());
    if (!read || *read < static_cast<long long>(least) || *read > static_cast<long long>(most))
        throw Refused(name, text.raw(), least, most);
    value = static_cast<Number>(*read);
}

void readSpeed(const std::string& text, double& speed)
{
    const auto value = Kes::NumberText::read(text);
    if (!value || !(*value >= minimumSpeed && *value <= maximumSpeed))
        throw Refused("speed", text, minimumSpeed, maximumSpeed);
    speed = *value;
}

void readPlace(const std::string& text, SimulatorOptions& options)
{
    const auto colon = std::min(text.find(':'), text.size());
    const auto address = KesDriver::NetAddress::parse(text.substr(0, colon));
    if (!address || colon + 1 == text.size())
        throw Refused("listen", text);
    options.address = *address;
    if (colon < text.size())
        readNumber<std::uint16_t>("listen", text.substr(colon + 1), 0,
                                  std::numeric_limits<std::uint16_t>::max(), options.port);
}

void readRelay(const std::string& text, SimulatorOptions& options)
{
    const auto colon = std::min(text.find(':'), text.size());
    options.relayKind = text.substr(0, colon);
    for (std::size_t begin = colon + 1; begin < text.size();) {
        const auto end = std::min(text.find(',', begin), text.size());
        options.relaySettings.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
}

SimulatorOptions convert(const Texts& texts)
{
    SimulatorOptions options;
    if (!texts.listen.empty())
        readPlace(texts.listen.raw(), options);
    readNumber("devices", texts.devices, 1U, SimulatorOptions::mostDevices, options.devices);
    readNumber<std::uint16_t>("type", texts.type, 1, std::numeric_limits<std::uint16_t>::max(), options.type);
    readNumber<std::uint32_t>("serial", texts.serial, 1, 999999999, options.serialNumber);
    if (!texts.speed.empty())
        readSpeed(texts.speed.raw(), options.speed);
    readRelay(texts.wire.raw(), options);
    const auto addresses = 256U - options.address.getBytes().back();
    if (options.devices > addresses)
        throw Refused("devices", texts.devices.raw(), 1, addresses);
    options.announce = texts.announce;
    // Nobody could connect to it.
    if (options.announce && options.address == KesDriver::NetAddress())
        throw Refused("announce", options.address.to_string());
    options.log = texts.log;
    options.version = texts.version;
    return options;
}

} // namespace

std::variant<SimulatorOptions, std::string> SimulatorOptions::parse(int argc, char** argv)
{
    std::setlocale(LC_CTYPE, "");
    lng::useLanguageOfUser();
    Glib::OptionContext context;
    context.set_summary(lng::Simulator::get("summary"));
    Texts texts;
    context.set_main_group(texts);
    try {
        auto refusal = Kes::parseOptions(context, argc, argv);
        if (!refusal.empty())
            return refusal;
        if (argc > 1)
            return Kes::StringHelper::format(lng::Simulator::get("error.argument"), argv[1]);
        return convert(texts);
    } catch (const Refused& error) {
        return std::string(error.what());
    }
}

} // namespace Simulator
