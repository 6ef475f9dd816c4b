#include <KesDriver/simulated/serving/detail/Dialogue.h>

#include <KesCommon/NumberText.h>
#include <KesDriver/simulated/serving/detail/Commands.h>

#include <utility>

namespace KesDriver {

Dialogue::Dialogue(std::shared_ptr<ServedDevice> device, std::shared_ptr<ILineSink> sink, std::string address)
    : _device(std::move(device)), _sink(std::move(sink)), _address(std::move(address)),
      _heard(std::chrono::steady_clock::now())
{}

Dialogue::~Dialogue() = default;

void Dialogue::end()
{
    _device->getEvents().unsubscribe(*_sink);
    _device->getControl().release(_number, "the session of the controller has ended");
}

std::optional<std::string> Dialogue::execute(std::string_view message)
{
    Scpi::UnitReader reader(message);
    std::string answer;
    _hasAnswer = false;
    for (bool isMore = true; isMore;) {
        try {
            Scpi::Unit unit;
            isMore = reader.next(unit);
            if (isMore)
                _execute(unit, answer);
        } catch (const Scpi::Error& error) {
            addError(error);
        }
    }
    return _hasAnswer ? std::optional(std::move(answer)) : std::nullopt;
}

void Dialogue::_execute(const Scpi::Unit& unit, std::string& answer)
{
    const auto found = Commands::getTable().find(unit);
    if (unit.parameters.size() > found.handler.mostParameters)
        throw Scpi::Error(Scpi::ErrorCode::ParameterNotAllowed, unit.header);
    Scpi::Arguments arguments(unit.parameters);
    Commands::Call call{*this, arguments, found.suffixes, {}};
    found.handler.run(call);
    if (!unit.isQuery)
        return;
    if (answer.size() + call.answer.size() >= longestAnswer)
        throw Scpi::Error(Scpi::ErrorCode::AnswerTooLong, unit.header + '?');
    answer += (_hasAnswer ? ";" : "") + call.answer;
    _hasAnswer = true;
}

void Dialogue::read(const SimulatedHost::Request& request) const
{
    if (!use(request))
        throw Scpi::Error(Scpi::ErrorCode::SettingsConflict);
}

void Dialogue::control(const SimulatedHost::Request& request) const
{
    _device->getControl().call(_number, request);
}

void Dialogue::addError(const Scpi::Error& error)
{
    useStatus([&](Scpi::InstrumentStatus& status) { status.addError(error); });
}

void Dialogue::noteConditions(Scpi::StatusRegister::Bits operation, Scpi::StatusRegister::Bits questionable)
{
    useStatus([&](Scpi::InstrumentStatus& status) {
        status.operation.setCondition(operation);
        status.questionable.setCondition(questionable);
    });
}

std::optional<Dialogue::RealTime> Dialogue::getDeadline() const
{
    if (_watchdog.count() <= 0.0)
        return std::nullopt;
    return _heard + std::chrono::duration_cast<RealTime::duration>(_watchdog);
}

void Dialogue::checkWatchdog(RealTime now)
{
    const auto deadline = getDeadline();
    if (!deadline || now < *deadline)
        return;
    const auto seconds = Kes::NumberText::write(_watchdog.count());
    _watchdog = _watchdog.zero();
    _device->getControl().release(_number, "nothing was heard of the controller for " + seconds + " s");
}

} // namespace KesDriver
