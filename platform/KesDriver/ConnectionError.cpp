#include <KesDriver/ConnectionError.h>

#include <utility>

namespace KesDriver {

ConnectionError::~ConnectionError() = default;

Kes::Result ConnectionError::failure(std::string text)
{
    return std::shared_ptr<Kes::ObjectError>(std::make_shared<ConnectionError>(std::move(text)));
}

bool isConnectionError(const Kes::Result& result)
{
    return !result && dynamic_cast<const ConnectionError*>(result.getError().get());
}

} // namespace KesDriver
