// What the pages and the comments of headers show and no program of the tree needs in this form. It is
// compiled with the tests.

#include <KesCommon/Language.h>
#include <KesCommon/TextTable.h>
#include <KesDevice/HardwareControl.h>
#include <KesDriver/net/TcpNetwork.h>
#include <KesMeasure/ContactChanges.h>
#include <KesMeasure/Measurement.h>
#include <KesMeasure/SequenceRecorder.h>

#include <chrono>
#include <memory>
#include <optional>

namespace KesExamples {

namespace {

//! [texts]
constexpr Kes::TextTable table("Example",
                               {{"error.Lost", "Lost", "Потеряно"}, {"state.On", "On", "Включено"}});
const char* get(const std::string& key)
{
    return table.get(key);
}
//! [texts]

constexpr lng::Text off{"Output.off", "Off", "Выключено"};

//! [language]
constexpr lng::TranslatedText german[] = {{"Program.Menu.file", "Datei"}, {"Program.Menu.help", "Hilfe"}};
const auto added = lng::addLanguage({"de", "de-DE", ',', german});
//! [language]

} // namespace

std::string getLost()
{
    return get("error.Lost") + std::string(off.get());
}

KesMeasure::PlannedMeasurement planOvervoltage(const KesDriver::OutputStep& healthy,
                                               const KesDriver::OutputStep& beyondTheSetting)
{
    //! [measurement]
    KesMeasure::PlannedMeasurement planned;
    planned.id = "overvoltage.operateTime"; // in files
    planned.object = "59 U>";               // for people
    planned.quantity = "operate time";
    planned.unit = "s";
    planned.expected = 0.5;
    planned.lower = 0.45;
    planned.upper = 0.55;
    planned.guard = {.rest = healthy.outputs, .contacts = {1, 2}, .resetTime = std::chrono::seconds(2)};
    planned.sequences = {{healthy, beyondTheSetting}};
    planned.read = [](std::size_t,
                      const KesMeasure::SequenceRecord& record) -> std::optional<KesMeasure::Reading> {
        const auto trip =
            KesMeasure::ContactChanges::findFirst(record, {1, true}, std::chrono::milliseconds(5), 1);
        if (!trip)
            return std::nullopt; // no operation
        return KesMeasure::Reading{KesMeasure::MeasureState::Measured,
                                   std::chrono::duration<double>(trip->time - record.steps[1]).count()};
    };
    //! [measurement]
    return planned;
}

/// Hears the inputs of one device for as long as it lives.
class Listener {
public:
    explicit Listener(KesDevice::Kesto* kesto)
    {
        //! [reports]
        _reports = kesto->signalReport.connect([this](const KesDriver::Report& report) {
            if (const auto* input = std::get_if<KesDriver::InputEvent>(&report))
                _onInput(*input);
        });
        //! [reports]
    }

private:
    void _onInput(const KesDriver::InputEvent& input) { _last = input; }

    std::optional<KesDriver::InputEvent> _last;
    Kes::ScopedConnection _reports;
};

std::unique_ptr<Listener> listenTo(KesDevice::Kesto& kesto)
{
    return std::make_unique<Listener>(&kesto);
}

class MyNetwork : public KesDriver::TcpNetwork {};

void useNetwork()
{
    //! [network]
    KesDevice::HardwareControl::setNetwork(std::make_shared<MyNetwork>());
    //! [network]
}

} // namespace KesExamples
