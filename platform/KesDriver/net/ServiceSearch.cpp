#include <KesDriver/net/ServiceSearch.h>

#include <KesDriver/DriverText.h>
#include <KesDriver/net/detail/AvahiLibrary.h>
#include <KesDriver/net/detail/DeviceQuestions.h>
#include <KesDriver/net/detail/ServiceText.h>
#include <KesDriver/net/detail/ThreadContext.h>

#include <map>
#include <optional>
#include <set>
#include <utility>

namespace KesDriver {

namespace {

/// One search: from services to devices.
class Search {
public:
    Search(const FoundListener& found, std::uint16_t port)
        : _found(found), _port(port), _questions(ServiceText::question, port)
    {}

    void take(const ServiceRecord& service)
    {
        const auto announced = service.port == _port ? ServiceText::read(service) : std::nullopt;
        if (!announced || _known.contains(announced->address))
            return;
        if (_known.size() == ServiceSearch::mostDevices) {
            _isCut = true;
            return;
        }
        _known.insert(announced->address);
        _asked.emplace(announced->address, *announced);
        _questions.ask(announced->address, [this, address = announced->address](const auto& answer) {
            _onAnswered(address, answer);
        });
    }

    bool isAsking() const { return _questions.isAsking(); }
    bool isCut() const { return _isCut; }

    /// Those that have not answered are as they were announced.
    void tellRest()
    {
        for (const auto& [address, announced] : std::exchange(_asked, {}))
            _found(announced);
    }

private:
    void _onAnswered(const NetAddress& address, const std::optional<std::string>& answer)
    {
        const auto asked = _asked.extract(address);
        const auto told = answer ? ServiceText::readAnswer(address, *answer) : std::nullopt;
        _found(told ? *told : asked.mapped());
    }

    const FoundListener& _found;
    const std::uint16_t _port;
    std::set<NetAddress> _known;
    std::map<NetAddress, FoundDevice> _asked;
    bool _isCut = false;
    DeviceQuestions _questions;
};

} // namespace

ServiceSearch::ServiceSearch(std::uint16_t port) : ServiceSearch(port, &makeAvahiBrowser) {}

ServiceSearch::ServiceSearch(std::uint16_t port, MakeBrowser makeBrowser, std::chrono::milliseconds duration)
    : _port(port), _makeBrowser(std::move(makeBrowser)), _duration(duration)
{}

Kes::Result ServiceSearch::find(const FoundListener& found, std::stop_token stop) const
{
    ThreadContext context;
    Search search(found, _port);
    auto browser = _makeBrowser();
    browser->start([&](const ServiceRecord& service) { search.take(service); });
    context.run(stop, _duration, [&] { return !browser->getResult(); });
    auto result = browser->getResult();
    browser.reset();
    context.run(stop, DeviceQuestions::timeout, [&] { return !search.isAsking(); });
    if (stop.stop_requested())
        return true;
    search.tellRest();
    if (result && search.isCut())
        return Kes::Result::failure(lng::Driver::get("Search.tooMany"));
    return result;
}

} // namespace KesDriver
