#include <KesDriver/net/detail/DeviceOwner.h>

#include <KesDriver/net/FieldText.h>

namespace KesDriver {

std::optional<DeviceOwner> readOwner(std::string_view answer)
{
    constexpr std::size_t count = 2;
    const auto parts = FieldText::split(answer, ',', count);
    if (!parts || parts->size() != count)
        return std::nullopt;
    const auto name = FieldText::unquote(parts->front());
    const auto address = FieldText::unquote(parts->back());
    return name && address ? std::optional(DeviceOwner{*name, *address}) : std::nullopt;
}

} // namespace KesDriver
