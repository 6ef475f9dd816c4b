#include <KesDriver/Refusal.h>

#include <utility>

namespace KesDriver {

Refusal::Refusal(RefusalCode code, std::string text) : Kes::TextError(std::move(text)), _code(code) {}

Refusal::~Refusal() = default;

Kes::Result Refusal::failure(RefusalCode code, std::string text)
{
    return Kes::Result(std::make_shared<Refusal>(code, std::move(text)));
}

std::optional<RefusalCode> getRefusalCode(const Kes::Result& result)
{
    const auto* const refusal = dynamic_cast<const Refusal*>(result.getError().get());
    return refusal ? std::optional(refusal->getCode()) : std::nullopt;
}

} // namespace KesDriver
