// Addresses of devices as texts.

#include "Require.h"

#include <KesCommon/Net/NetAddr.h>

namespace {

template <typename Address>
void check(const std::string& text)
{
    if (const auto address = Address::parse(text))
        require(address->to_string() == text, "an address has one text");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(bytes), size);
    check<Kes::Net::NetAddr<4, '.'>>(text);
    check<Kes::Net::NetAddr<6, ':'>>(text);
    return 0;
}
