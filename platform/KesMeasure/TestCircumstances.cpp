#include <KesMeasure/TestCircumstances.h>

#include <KesMeasure/MeasureText.h>
#include <KesMeasure/XmlAttributes.h>

#include <KesCommon/StringHelper.h>
#include <KesDevice/Kesto.h>

#include <glibmm/checksum.h>
#include <glibmm/datetime.h>
#include <libxml++/libxml++.h>

#include <tuple>

namespace KesMeasure {

namespace {

using lng::Measure::get;

constexpr std::pair<const char*, Origin> origins[] = {
    {"false", Origin::Device}, {"true", Origin::Simulated}, {"unknown", Origin::Unknown}};

/// Files of former versions have none of these.
constexpr std::pair<const char*, std::string TestCircumstances::*> laterTexts[] = {
    {"serialNumber", &TestCircumstances::serialNumber},
    {"firmwareVersion", &TestCircumstances::firmwareVersion},
    {"calibrationDate", &TestCircumstances::calibrationDate},
    {"continuedAt", &TestCircumstances::continuedAt}};

constexpr const char* checksumName = "checksum";

std::string serialNumberOf(const KesDriver::KestoIdentifer& identifer)
{
    const auto number = identifer.getSerialNumber();
    return number == 0 ? std::string() : Kes::StringHelper::format("%05u", number);
}

} // namespace

TestCircumstances TestCircumstances::ofTestWith(const KesDevice::Kesto& kesto)
{
    const auto identity = kesto.getIdentity();
    TestCircumstances circumstances;
    circumstances.device = identity.identifer.toDisplayString();
    circumstances.serialNumber = serialNumberOf(identity.identifer);
    circumstances.firmwareVersion = identity.firmwareVersion;
    circumstances.calibrationDate = identity.calibrationDate;
    circumstances.origin = kesto.isSimulated() ? Origin::Simulated : Origin::Device;
    circumstances.startedAt = Glib::DateTime::create_now_local().format("%Y-%m-%d %H:%M:%S");
    return circumstances;
}

TestCircumstances TestCircumstances::lost()
{
    TestCircumstances circumstances;
    circumstances.origin = Origin::Unknown;
    circumstances.foreignChecksum = "";
    return circumstances;
}

bool TestCircumstances::isOfSameDevice(const TestCircumstances& other) const
{
    const auto identify = [](const TestCircumstances& test) {
        return std::tie(test.origin, test.device, test.serialNumber, test.firmwareVersion,
                        test.calibrationDate);
    };
    return identify(*this) == identify(other);
}

std::string TestCircumstances::getChecksum(const std::string& results) const
{
    const auto own = writeXml("test", [this](xmlpp::Element& root) { _writeValues(root); });
    return Glib::Checksum::compute_checksum(Glib::Checksum::CHECKSUM_SHA256, own + results);
}

std::vector<TextLine> TestCircumstances::describe(const std::string& results) const
{
    std::vector<TextLine> lines;
    const auto add = [&lines](const char* key, const std::string& value) {
        if (!value.empty())
            lines.push_back({get(key), value});
    };
    add("Circumstances.serialNumber", serialNumber);
    add("Circumstances.firmwareVersion", firmwareVersion);
    add("Circumstances.calibrationDate", calibrationDate);
    add("Circumstances.continuedAt", continuedAt);
    if (!foreignChecksum)
        add("Circumstances.checksum", getChecksum(results));
    else
        add("Circumstances.checksum",
            get(isChangedByHand() ? "Circumstances.wrongChecksum" : "Circumstances.noChecksum"));
    return lines;
}

void TestCircumstances::writeCircumstances(xmlpp::Element& element, const std::string& results) const
{
    _writeValues(element);
    const auto checksum = foreignChecksum ? *foreignChecksum : getChecksum(results);
    if (!checksum.empty())
        setAttribute(element, checksumName, checksum);
}

void TestCircumstances::_writeValues(xmlpp::Element& element) const
{
    setAttribute(element, "simulated", wordOf(origin, origins));
    setAttribute(element, "device", device);
    setAttribute(element, "startedAt", startedAt);
    for (const auto& [name, text] : laterTexts)
        if (!(this->*text).empty())
            setAttribute(element, name, this->*text);
}

bool TestCircumstances::readCircumstances(const xmlpp::Element& element, const std::string& results)
{
    XmlAttributes attributes(element);
    TestCircumstances read;
    read.origin = attributes.choice("simulated", origins);
    read.device = attributes.text("device");
    read.startedAt = attributes.text("startedAt");
    if (!attributes.isGood())
        return false;
    for (const auto& [name, text] : laterTexts)
        read.*text = element.get_attribute_value(name).raw();
    const auto checksum = element.get_attribute_value(checksumName).raw();
    if (checksum != read.getChecksum(results))
        read.foreignChecksum = checksum;
    *this = read;
    return true;
}

} // namespace KesMeasure
