#include <KesDriver/net/detail/AvahiLibrary.h>

#include <KesCommon/LateLibrary.h>
#include <KesDriver/DriverText.h>

namespace KesDriver {

namespace {

class NoBrowser : public IServiceBrowser {
public:
    void start(Listener) override {}
    Kes::Result getResult() const override
    {
        return Kes::Result::failure(lng::Driver::get("Search.noService"));
    }
};

} // namespace

std::unique_ptr<IServiceBrowser> makeAvahiBrowser()
{
    const auto make = Kes::findLate<decltype(kesMakeAvahiBrowser)>(avahiLibrary, "kesMakeAvahiBrowser");
    if (!make)
        return std::make_unique<NoBrowser>();
    return std::unique_ptr<IServiceBrowser>(make());
}

std::unique_ptr<IServicePublisher> makeAvahiPublisher(const std::string& name, const ServiceRecord& service)
{
    const auto make = Kes::findLate<decltype(kesMakeAvahiPublisher)>(avahiLibrary, "kesMakeAvahiPublisher");
    return std::unique_ptr<IServicePublisher>(make ? make(name, service) : nullptr);
}

} // namespace KesDriver
